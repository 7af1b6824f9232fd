#include "service/WebApiRequest.h"

namespace mevo {

namespace {

/// An address that ends with its host gets a "/": the cipher would become part of the host's name, and go to
/// whoever has that.
QString withPath(const QString &base)
{
    const int scheme = base.indexOf(QLatin1String("://"));
    const int host = scheme < 0 ? 0 : scheme + 3;
    for (const char sign : {'/', '?'}) {
        if (base.indexOf(QLatin1Char(sign), host) >= 0) {
            return base;
        }
    }
    return base + QLatin1Char('/');
}

} // namespace

QUrl webApiUrl(const WebCipher &cipher, const QString &base, const char *tag, const QString &statement)
{
    const QString length = QStringLiteral("%1").arg(statement.size(), 3, 10, QLatin1Char('0'));
    return QUrl(withPath(base) + QLatin1String(tag) + length + cipher.EncryptString(statement));
}

} // namespace mevo
