#include "engines/BaiduReply.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

namespace mevo {

namespace {

/// A message is shown to the user; more than this is no message.
constexpr int LongestMessage = 500;

int errorNumber(const QJsonValue &value)
{
    if (value.isUndefined() || value.isNull()) {
        return 0;
    }
    if (value.isString()) {
        bool isNumber = false;
        const int number = value.toString().toInt(&isNumber);
        return isNumber ? number : -1;
    }
    return value.toInt(-1);
}

} // namespace

BaiduReply parseBaiduReply(const QByteArray &reply)
{
    const QJsonObject object = QJsonDocument::fromJson(reply).object();
    BaiduReply parsed;
    parsed.errNo = errorNumber(object.value(QStringLiteral("err_no")));
    parsed.errMsg = object.value(QStringLiteral("err_msg")).toString().left(LongestMessage);
    const QJsonValue first = object.value(QStringLiteral("result")).toArray().at(0);
    if (first.isString()) {
        parsed.text = first.toString();
    }
    return parsed;
}

} // namespace mevo
