# Device access: hidapi and udev.
mevo_app_sources(
    platform/linux/HidapiHid.cpp
    platform/linux/HidapiHid.h
    platform/linux/UdevNotifier.cpp
    platform/linux/UdevNotifier.h)
