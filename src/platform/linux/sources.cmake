# The Linux platform, a line for each pair of files.
mevo_app_sources(
    platform/linux/LinuxTime.h
    platform/linux/MakePlatform.cpp)
include(${CMAKE_CURRENT_LIST_DIR}/device_sources.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/x11_sources.cmake)
include(${CMAKE_CURRENT_LIST_DIR}/system_sources.cmake)
