#include "service/ProductRecord.h"

#include "service/WebApiReply.h"

#include <QDebug>

#include <limits>

namespace mevo {

namespace {

constexpr int shortestHeartbeatMs = 500;
constexpr int usualHeartbeatMs = 1000;

constexpr int longestHeartbeatMs = 60000;
constexpr int longestPageDelayMs = 24 * 3600 * 1000;
constexpr int longestText = 255;
constexpr int longestList = 4096; ///< of accounts, each of a few dozen characters
constexpr int anyNumber = std::numeric_limits<int>::max();

struct NumberColumn
{
    const char *column;
    int MainState::*member;
    int lowest = 0;
    int highest = anyNumber;
};

constexpr NumberColumn numberColumns[] = {
    {"VWebIntervalTime", &MainState::VWebIntervalTime, 0, longestPageDelayMs},
    {"VWebSeed", &MainState::VWebSeed},
    {"bdsrbdsssetlen", &MainState::bdsrbdsssetlen},
    {"bdsrbdsssetjslen", &MainState::bdsrbdsssetjslen},
    {"bdsrbdsssetbzlen", &MainState::bdsrbdsssetbzlen},
    {"bdsrbdsssetschlen", &MainState::bdsrbdsssetschlen},
    {"bdsrbdsssetenlen", &MainState::bdsrbdsssetenlen},
    {"bdsrbdsssetyylen", &MainState::bdsrbdsssetyylen},
    {"bdsrbdsssetttslen", &MainState::bdsrbdsssetttslen},
    {"bdsrbdsssetfylen", &MainState::bdsrbdsssetfylen},
    {"besrfdsssetlen", &MainState::besrfdsssetlen},
};

struct FlagColumn
{
    const char *column;
    bool MainState::*member;
};

constexpr FlagColumn flagColumns[] = {
    {"ClickCanASR", &MainState::ClickCanASR},
    {"ShowCopyRight", &MainState::ShowCopyRight},
};

/// What the settings page looks up in the file, also without a network.
constexpr const char *keptFlags[] = {"NoMouse", "NoDirectLanes"};

struct TextColumn
{
    const char *column;
    QString MainState::*member;
    bool kept; ///< also written to the settings file, for the help pages without a network
    int longest = longestText;
};

constexpr TextColumn textColumns[] = {
    {"TXSCD", &MainState::TXSCD, false, longestList},
    {"TXSCK", &MainState::TXSCK, false, longestList},
    {"VWeb", &MainState::VWeb, false},
    {"DownloadDrvWeb", &MainState::DownloadDrvWeb, true},
    {"UserManual", &MainState::UserManual, true},
    {"Website", &MainState::Website, true},
    {"SupportContact", &MainState::SupportContact, true},
    {"SupportEmail", &MainState::SupportEmail, true},
    {"SWName", &MainState::SWName, false},
};

} // namespace

std::optional<ProductKey> productKey(const QString &dongleId)
{
    const QStringList groups = dongleId.split(QLatin1Char('-'));
    if (groups.size() < 3) {
        return {};
    }
    bool customOk = false;
    bool productionOk = false;
    const uint custom = groups[0].toUInt(&customOk, 16);
    const uint production = groups[1].toUInt(&productionOk, 16);
    if (!customOk || !productionOk) {
        return {};
    }
    return ProductKey{QString::number(custom), QString::number(production)};
}

QList<ProductSetting> applyProductRecord(MainState &state, const QJsonObject &row)
{
    QList<ProductSetting> settings;
    QStringList passedOver;
    for (const NumberColumn &column : numberColumns) {
        const int number = columnNumber(row, QLatin1String(column.column), state.*column.member);
        if (number >= column.lowest && number <= column.highest) {
            state.*column.member = number;
        } else if (number != state.*column.member) {
            passedOver.append(QLatin1String(column.column));
        }
    }
    for (const TextColumn &column : textColumns) {
        const QJsonValue value = row.value(QLatin1String(column.column));
        const QString text = value.toString();
        if (text.isEmpty() || text.size() > column.longest) {
            if (!text.isEmpty() || !(value.isString() || value.isNull() || value.isUndefined())) {
                passedOver.append(QLatin1String(column.column));
            }
            continue;
        }
        state.*column.member = text;
        if (column.kept) {
            settings.append({QLatin1String(column.column), text});
        }
    }
    const int interval = columnNumber(row, QStringLiteral("VoiceIntervalTime"), state.VoiceIntervalTime);
    if (interval <= longestHeartbeatMs) {
        state.VoiceIntervalTime = interval < shortestHeartbeatMs ? usualHeartbeatMs : interval;
    } else {
        passedOver.append(QStringLiteral("VoiceIntervalTime"));
    }
    for (const FlagColumn &column : flagColumns) {
        state.*column.member =
            columnNumber(row, QLatin1String(column.column), state.*column.member ? 1 : 0) != 0;
    }
    for (const char *column : keptFlags) {
        if (row.contains(QLatin1String(column))) {
            settings.append({QLatin1String(column),
                             QString::number(columnNumber(row, QLatin1String(column), 0) != 0 ? 1 : 0)});
        }
    }
    if (!passedOver.isEmpty()) {
        qWarning().noquote() << "Product record: passed over:" << passedOver.join(QLatin1Char(' '));
    }
    return settings;
}

} // namespace mevo
