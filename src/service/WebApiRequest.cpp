#include "service/WebApiRequest.h"

namespace mevo {

QUrl webApiUrl(const WebCipher &cipher, const QString &base, const char *tag, const QString &statement)
{
    const QString length = QStringLiteral("%1").arg(statement.size(), 3, 10, QLatin1Char('0'));
    return QUrl(base + QLatin1String(tag) + length + cipher.EncryptString(statement));
}

} // namespace mevo
