#include "service/WebApiReply.h"

#include <QDebug>
#include <QJsonDocument>

namespace mevo {

namespace {

constexpr int LengthDigits = 5;

std::optional<WebApiReply> refuse(const char *reason)
{
    qWarning("Backend: reply refused: %s", reason);
    return std::nullopt;
}

} // namespace

std::optional<WebApiReply> unwrapReply(const WebCipher &cipher, const QString &reply)
{
    const QString payload = reply.mid(LengthDigits);
    if (lengthOfDigits(reply.leftRef(LengthDigits)) != payload.size()) {
        return refuse("its length does not agree");
    }
    const QString json = cipher.DecryptString(payload);
    if (json.isNull()) {
        return refuse("no cipher text");
    }
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    if (!document.isObject()) {
        return refuse("no JSON object");
    }

    const QJsonObject object = document.object();
    WebApiReply unwrapped;
    unwrapped.items = columnNumber(object, QStringLiteral("items"));
    unwrapped.counted = columnNumber(object, QStringLiteral("items"), -1) == unwrapped.items;
    unwrapped.result = columnText(object, QStringLiteral("result"));
    for (int row = 0; row < unwrapped.items; ++row) {
        const QJsonValue value = object.value(QStringLiteral("result%1").arg(row));
        if (!value.isObject()) {
            break; // a count without rows must not make us look for millions of them
        }
        unwrapped.rows.push_back(value.toObject());
    }
    return unwrapped;
}

QString columnText(const QJsonObject &row, const QString &column)
{
    return row.value(column).toVariant().toString();
}

int columnNumber(const QJsonObject &row, const QString &column, int fallback)
{
    bool isNumber = false;
    const int number = columnText(row, column).toInt(&isNumber, 10);
    return isNumber ? number : fallback;
}

} // namespace mevo
