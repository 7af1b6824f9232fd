#include "base/Endpoints.h"
#include "platform/Platform.h"
#include "platform/linux/DesktopNotifications.h"
#include "platform/linux/EspeakSpeech.h"
#include "platform/linux/FlockSingleInstance.h"
#include "platform/linux/HidapiHid.h"
#include "platform/linux/LinuxElevation.h"
#include "platform/linux/LinuxProcesses.h"
#include "platform/linux/LinuxSystemFacts.h"
#include "platform/linux/LinuxTime.h"
#include "platform/linux/NoRegistry.h"
#include "platform/linux/PulseAudioRouter.h"
#include "platform/linux/QtClipboard.h"
#include "platform/linux/RouteNetworkState.h"
#include "platform/linux/UdevNotifier.h"
#include "platform/linux/X11Keyboard.h"
#include "platform/linux/X11OwnWindows.h"
#include "platform/linux/X11WindowSystem.h"
#include "platform/linux/XdgStartupEntry.h"

namespace mevo {

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
    return platform;
}

} // namespace mevo
