#include "base/ApplicationFiles.h"
#include "base/Endpoints.h"
#include "platform/Platform.h"
#include "platform/linux/DesktopNotifications.h"
#include "platform/linux/DesktopSecretStore.h"
#include "platform/linux/EspeakSpeech.h"
#include "platform/linux/FlockSingleInstance.h"
#include "platform/linux/HidapiHid.h"
#include "platform/linux/LinuxElevation.h"
#include "platform/linux/LinuxProcesses.h"
#include "platform/linux/LinuxSystemFacts.h"
#include "platform/linux/LinuxTime.h"
#include "platform/linux/NoRegistry.h"
#include "platform/linux/PulseAudioRouter.h"
#include "platform/linux/PulseInputs.h"
#include "platform/linux/QtClipboard.h"
#include "platform/linux/RouteNetworkState.h"
#include "platform/linux/UdevNotifier.h"
#include "platform/linux/X11Keyboard.h"
#include "platform/linux/X11OwnWindows.h"
#include "platform/linux/X11WindowSystem.h"
#include "platform/linux/XdgStartupEntry.h"

#include <QStandardPaths>

namespace mevo {

namespace {

/// A program that was given a folder of its own keeps its secrets there too, and leaves those of the user's
/// desktop alone.
std::unique_ptr<SecretStore> makeSecretStore()
{
    const QString file = QStringLiteral("MEVOAccounts.json");
    if (!qEnvironmentVariableIsEmpty("MEVO_HOME")) {
        return std::make_unique<DesktopSecretStore>(appFile(file), true);
    }
    // Not the program's own folder: that may be a stick that knows no permissions, or be handed on.
    return std::make_unique<DesktopSecretStore>(
        QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QLatin1Char('/') + file, false);
}

} // namespace

std::unique_ptr<Platform> makePlatform()
{
    auto platform = std::make_unique<Platform>();
    platform->time = std::make_unique<LinuxTime>();
    platform->systemFacts = std::make_unique<LinuxSystemFacts>();
    platform->hid = std::make_unique<HidapiHid>();
    platform->deviceNotifier = std::make_unique<UdevNotifier>();
    platform->windowSystem = std::make_unique<X11WindowSystem>();
    platform->ownWindows = std::make_unique<X11OwnWindows>();
    platform->keyboard = std::make_unique<X11Keyboard>();
    platform->clipboard = std::make_unique<QtClipboard>();
    platform->processes = std::make_unique<LinuxProcesses>();
    platform->elevation = std::make_unique<LinuxElevation>();
    platform->startupEntry = std::make_unique<XdgStartupEntry>();
    platform->registry = std::make_unique<NoRegistry>();
    platform->audioRouter = std::make_unique<PulseAudioRouter>();
    platform->soundInputs = std::make_unique<PulseInputs>();
    platform->networkState = std::make_unique<RouteNetworkState>([] {
        static const bool local = [] {
            BackendEndpoints backend;
            const EngineEndpoints endpoints = loadEndpoints(backend);
            return allOnThisMachine(backend, endpoints);
        }();
        return local;
    });
    platform->singleInstance = std::make_unique<FlockSingleInstance>();
    platform->notifications = std::make_unique<DesktopNotifications>();
    platform->speech = std::make_unique<EspeakSpeech>();
    platform->secrets = makeSecretStore();
    return platform;
}

} // namespace mevo
