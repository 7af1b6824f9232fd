mevo_app_sources(
    platform/linux/DesktopNotifications.cpp
    platform/linux/DesktopNotifications.h
    platform/linux/LinuxProcesses.cpp
    platform/linux/LinuxProcesses.h
    platform/linux/LinuxSystem.cpp
    platform/linux/LinuxSystem.h)
