#pragma once

#include "platform/Clipboard.h"
#include "platform/DeviceNotifier.h"
#include "platform/Hid.h"
#include "platform/Keyboard.h"
#include "platform/Notifications.h"
#include "platform/OwnWindows.h"
#include "platform/Processes.h"
#include "platform/SecretStore.h"
#include "platform/SoundInput.h"
#include "platform/Speech.h"
#include "platform/SystemServices.h"
#include "platform/WindowSystem.h"

#include <memory>

namespace mevo {

/// Everything that the program asks of the operating system. All members are set, except
/// `audioRouter`, which is null where microphones cannot be switched.
struct Platform
{
    std::unique_ptr<Time> time;
    std::unique_ptr<SystemFacts> systemFacts;
    std::unique_ptr<Hid> hid;
    std::unique_ptr<DeviceNotifier> deviceNotifier;
    std::unique_ptr<WindowSystem> windowSystem;
    std::unique_ptr<OwnWindows> ownWindows;
    std::unique_ptr<Keyboard> keyboard;
    std::unique_ptr<Clipboard> clipboard;
    std::unique_ptr<Processes> processes;
    std::unique_ptr<Elevation> elevation;
    std::unique_ptr<StartupEntry> startupEntry;
    std::unique_ptr<Registry> registry;
    std::unique_ptr<AudioRouter> audioRouter;
    std::unique_ptr<SoundInputs> soundInputs;
    std::unique_ptr<NetworkState> networkState;
    std::unique_ptr<SingleInstance> singleInstance;
    std::unique_ptr<Notifications> notifications;
    std::unique_ptr<Speech> speech;
    std::unique_ptr<SecretStore> secrets;
};

/// The platform of this system. Needs a QGuiApplication; called once, in main.
std::unique_ptr<Platform> makePlatform();

} // namespace mevo
