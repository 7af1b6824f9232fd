#include "service/RecordAddresses.h"

#include "base/WebPage.h"

#include <QDebug>
#include <QRegularExpression>
#include <QUrl>

namespace mevo {

namespace {

constexpr int longestAddress = 999; ///< three digits tell its length in the settings file

bool isSchemaName(const QString &text)
{
    static const QRegularExpression name(QStringLiteral("\\A[A-Za-z_][A-Za-z0-9_]{0,63}\\z"));
    return name.match(text).hasMatch();
}

bool canBe(const ServerAddress &address, const QString &text)
{
    if (address.member == &ServiceState::SchemaName) {
        return isSchemaName(text);
    }
    const QUrl url(text, QUrl::StrictMode);
    if (text.size() > longestAddress || !url.isValid()) {
        return false;
    }
    const bool socket = url.scheme() == QLatin1String("ws") || url.scheme() == QLatin1String("wss");
    return address.member == &ServiceState::PushSocketUrl ? socket && !url.host().isEmpty() : isWebPage(url);
}

} // namespace

QVector<AddressChange> changedAddresses(const QJsonObject &row,
                                        const std::function<QString(const QString &)> &stored)
{
    QVector<AddressChange> changes;
    QStringList passedOver;
    for (const ServerAddress &address : ServerAddresses) {
        const QString text =
            row.value(QLatin1String(address.column)).toString(); // no other type is an address
        const QString key = QLatin1String(address.key);
        if (text.isEmpty() || text == stored(key)) {
            continue;
        }
        if (!canBe(address, text)) {
            passedOver.append(QLatin1String(address.column));
            continue;
        }
        changes.append({key, text});
    }
    if (!passedOver.isEmpty()) {
        qWarning().noquote() << "Device record: no addresses, passed over:"
                             << passedOver.join(QLatin1Char(' '));
    }
    return changes;
}

} // namespace mevo
