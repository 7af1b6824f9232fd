# The Linux platform, a line for each pair of files.
mevo_app_sources(
    platform/linux/LinuxTime.h
    platform/linux/MakePlatform.cpp)
include(linux/system_sources.cmake)
