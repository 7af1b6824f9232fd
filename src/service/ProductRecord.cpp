#include "service/ProductRecord.h"

#include "service/WebApiReply.h"

namespace mevo {

namespace {

constexpr int shortestHeartbeatMs = 500;
constexpr int usualHeartbeatMs = 1000;

struct NumberColumn
{
    const char *column;
    int MainState::*member;
};

constexpr NumberColumn numberColumns[] = {
    {"VWebIntervalTime", &MainState::VWebIntervalTime},
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
};

constexpr TextColumn textColumns[] = {
    {"TXSCD", &MainState::TXSCD, false},
    {"TXSCK", &MainState::TXSCK, false},
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
    for (const NumberColumn &column : numberColumns) {
        state.*column.member = columnNumber(row, QLatin1String(column.column), state.*column.member);
    }
    for (const TextColumn &column : textColumns) {
        const QString text = columnText(row, QLatin1String(column.column));
        if (text.isEmpty()) {
            continue;
        }
        state.*column.member = text;
        if (column.kept) {
            settings.append({QLatin1String(column.column), text});
        }
    }
    const int interval = columnNumber(row, QStringLiteral("VoiceIntervalTime"), state.VoiceIntervalTime);
    state.VoiceIntervalTime = interval < shortestHeartbeatMs ? usualHeartbeatMs : interval;
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
    return settings;
}

} // namespace mevo
