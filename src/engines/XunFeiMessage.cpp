#include "engines/XunFeiMessage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

namespace mevo {

namespace {

QString joinedWords(const QJsonArray &ws)
{
    QString text;
    for (const QJsonValue &part : ws) {
        const QJsonArray words = part.toObject().value(QStringLiteral("cw")).toArray();
        for (const QJsonValue &word : words) {
            text += word.toObject().value(QStringLiteral("w")).toString();
        }
    }
    return text;
}

std::optional<int> wholeNumber(const QJsonValue &value)
{
    const double number = value.toDouble(0.5);
    const bool isInt = number == std::floor(number) && std::abs(number) <= std::numeric_limits<int>::max();
    return isInt ? std::make_optional(int(number)) : std::nullopt;
}

/// What is there and is no number is no success either.
int codeOf(const QJsonValue &value)
{
    bool isNumber = false;
    const int inText = value.toString().toInt(&isNumber);
    return value.isUndefined() || value.isNull() ? 0
           : isNumber                            ? inText
                                                 : wholeNumber(value).value_or(XunFeiMessage::NoCode);
}

} // namespace

bool parseXunFeiMessage(const QString &json, XunFeiMessage &message)
{
    message = {};
    if (json.size() > longestXunFeiMessage) {
        return false;
    }
    const QJsonDocument document = QJsonDocument::fromJson(json.toUtf8());
    if (!document.isObject()) {
        return false;
    }
    const QJsonObject object = document.object();
    const QJsonObject data = object.value(QStringLiteral("data")).toObject();
    const QJsonObject result = data.value(QStringLiteral("result")).toObject();
    message.code = codeOf(object.value(QStringLiteral("code")));
    message.message = object.value(QStringLiteral("message")).toString();
    message.status = data.value(QStringLiteral("status")).toInt();
    message.number = result.value(QStringLiteral("sn")).toInt();
    message.last = result.value(QStringLiteral("ls")).toBool();
    message.replaces = result.value(QStringLiteral("pgs")).toString() == QLatin1String("rpl");
    const QJsonArray range = result.value(QStringLiteral("rg")).toArray();
    const auto from = wholeNumber(range.at(0));
    const auto to = wholeNumber(range.at(1));
    if (range.size() == 2 && from && to) {
        message.from = *from;
        message.to = *to;
    }
    message.text = joinedWords(result.value(QStringLiteral("ws")).toArray());
    return true;
}

void applyXunFeiResult(QStringList &results, const XunFeiMessage &message)
{
    if (message.replaces) {
        const int end = std::min(message.to, results.size());
        for (int number = std::max(message.from, 1); number <= end; ++number) {
            results[number - 1].clear();
        }
    }
    results.append(message.text);
}

} // namespace mevo
