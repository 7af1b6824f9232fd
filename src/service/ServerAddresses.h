#pragma once

#include "service/ServiceState.h"
#include "service/WebCipher.h"

#include <QSettings>

#include <array>

namespace mevo {

/// One server address: where it is stored, what replaces it, and what it is when neither tells.
struct ServerAddress
{
    const char *key;      ///< in group `MainSetting`, stored as an enciphered field
    const char *column;   ///< of the device record
    const char *fallback; ///< the local services
    QString ServiceState::*member;
};

constexpr std::array<ServerAddress, 9> ServerAddresses{{
    {"ORVDB", "ORVSCHEMANAME", "orvdb", &ServiceState::SchemaName},
    {"TKS", "TALKINSERVER", "http://127.0.0.1:19004/mevowebapi?", &ServiceState::ServerUrl},
    {"TKSBK1", "TALKINSERVER_BK1", "http://127.0.0.1:19004/mevowebapi?", &ServiceState::ServerUrlBk1},
    {"TKSBK2", "TALKINSERVER_BK2", "http://localhost:19004/mevowebapi?", &ServiceState::ServerUrlBk2},
    {"VAD", "VERSIONCHECKURL", "http://127.0.0.1:19004/NewVersion", &ServiceState::VersionCheckUrl},
    {"VAD1", "VERSIONCHECKURL1", "http://localhost:19004/NewVersion", &ServiceState::VersionCheckUrl1},
    {"DAD", "DOWNLOADFILE_MANUALDOWN_ADDRESS", "http://127.0.0.1:19004/NewVersion_Manual",
     &ServiceState::ManualDownloadUrl},
    {"DAD1", "DOWNLOADFILE_MANUALDOWN_ADDRESS1", "http://localhost:19004/NewVersion_Manual",
     &ServiceState::ManualDownloadUrl1},
    {"ORVWSURL", "ORVWSURL", "ws://127.0.0.1:19006", &ServiceState::PushSocketUrl},
}};

/// Gives every address that is still empty its fallback, then whatever `settings`, opened at its group,
/// holds for it. A stored value that is empty or cannot be deciphered changes nothing.
void loadServerAddresses(ServiceState &state, const QSettings &settings, const WebCipher &cipher);

} // namespace mevo
