#include "engines/XunFeiMessage.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

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
    message.code = object.value(QStringLiteral("code")).toInt();
    message.message = object.value(QStringLiteral("message")).toString();
    message.status = data.value(QStringLiteral("status")).toInt();
    message.number = result.value(QStringLiteral("sn")).toInt();
    message.last = result.value(QStringLiteral("ls")).toBool();
    message.replaces = result.value(QStringLiteral("pgs")).toString() == QLatin1String("rpl");
    const QJsonArray range = result.value(QStringLiteral("rg")).toArray();
    if (range.size() == 2 && range.at(0).isDouble() && range.at(1).isDouble()) {
        message.from = range.at(0).toInt();
        message.to = range.at(1).toInt(-1);
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
