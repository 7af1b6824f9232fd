#pragma once

#include "service/WebCipher.h"
#include "state/ServiceState.h"

#include <array>

namespace mevo {

class SettingsFile;

/// One server address: where it is stored and what replaces it.
struct ServerAddress
{
    const char *key;    ///< in group `MainSetting`, stored as an enciphered field
    const char *column; ///< of the device record
    QString ServiceState::*member;
};

constexpr std::array<ServerAddress, 9> ServerAddresses{{
    {"ORVDB", "ORVSCHEMANAME", &ServiceState::SchemaName},
    {"TKS", "TALKINSERVER", &ServiceState::ServerUrl},
    {"TKSBK1", "TALKINSERVER_BK1", &ServiceState::ServerUrlBk1},
    {"TKSBK2", "TALKINSERVER_BK2", &ServiceState::ServerUrlBk2},
    {"VAD", "VERSIONCHECKURL", &ServiceState::VersionCheckUrl},
    {"VAD1", "VERSIONCHECKURL1", &ServiceState::VersionCheckUrl1},
    {"DAD", "DOWNLOADFILE_MANUALDOWN_ADDRESS", &ServiceState::ManualDownloadUrl},
    {"DAD1", "DOWNLOADFILE_MANUALDOWN_ADDRESS1", &ServiceState::ManualDownloadUrl1},
    {"ORVWSURL", "ORVWSURL", &ServiceState::PushSocketUrl},
}};

/// Replaces every address by what `settings`, opened at its group, holds for it. A stored value that is empty
/// or cannot be deciphered changes nothing.
void loadServerAddresses(ServiceState &state, const SettingsFile &settings, const WebCipher &cipher);

} // namespace mevo
