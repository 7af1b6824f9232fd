#include "service/ServerAddresses.h"

#include "base/SettingsFile.h"

#include <QDebug>

namespace mevo {

void loadServerAddresses(ServiceState &state, const SettingsFile &settings, const WebCipher &cipher)
{
    for (const ServerAddress &address : ServerAddresses) {
        QString &member = state.*address.member;
        const QString stored = settings.value(QLatin1String(address.key)).toString();
        if (stored.isEmpty()) {
            continue;
        }
        const QString text = decipherUnsizedField(cipher, stored);
        if (text.isEmpty()) {
            qWarning("Settings: the value of %s cannot be deciphered", address.key);
            continue;
        }
        member = text;
    }
}

} // namespace mevo
