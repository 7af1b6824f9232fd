#include "backend/LabDatabase.h"

#include "backend/LabCipher.h"

#include <sqlite3.h>

namespace lab {

namespace {

const char *const flagsOn =
    "ShowASR3UI ShowXunFeiInputMethod ShowSogouInputMethod ShowBaiduI ShowTXI ShowXFWebApi "
    "ShowTecentZhDialect "
    "ShowPowerLevel ShowPowerLow ShowBdFtPTHI ShowBdSdPTHI ShowBdYYI ShowBdSCHI ShowBdEnI UseBDAPIPara";
const char *const flagsOff =
    "ForceUseXFMore3V ShowASR3Custom ForceUseASR3 EnableASR3 MustClickRunASR3 EnableAutoCallASR3 "
    "UseXFSDKPara "
    "UseTXAPIPara UseXFWAPIPara UseBDFstPara UseXFWPIDWAPara HideXFSDK ShowXFDialect ShowXFSmallLan "
    "HW2ScreenIntervalTime Asr2ScreenIntervalTime ShowAssistInfo AutoUpdateSwitch ManualUpdateSwitch "
    "ForceUpdate "
    "BDSR1DUsedQuantity BDFY1MUsedQuantity XFSR1DUsedQuantity TXSR1DUsedQuantity";
const char *const texts =
    "ORVSCHEMANAME TALKINSERVER TALKINSERVER_BK1 TALKINSERVER_BK2 VERSIONCHECKURL VERSIONCHECKURL1 "
    "DOWNLOADFILE_MANUALDOWN_ADDRESS DOWNLOADFILE_MANUALDOWN_ADDRESS1 ORVWSURL IPRecord LastLoginDateTime "
    "LatestLoginTime CurrentSubVer";

QList<QByteArray> words(const char *list)
{
    return QByteArray(list).split(' ');
}

} // namespace

LabDatabase::~LabDatabase()
{
    sqlite3_close(m_database);
}

bool LabDatabase::execute(const QByteArray &sql)
{
    char *message = nullptr;
    if (sqlite3_exec(m_database, sql.constData(), nullptr, nullptr, &message) == SQLITE_OK) {
        return true;
    }
    m_error = QString::fromUtf8(message);
    sqlite3_free(message);
    return false;
}

bool LabDatabase::open(const QString &file, const QString &schema, const LabCipher &cipher)
{
    if (sqlite3_open(":memory:", &m_database) != SQLITE_OK) {
        m_error = QStringLiteral("cannot open a database");
        return false;
    }
    const QByteArray attach =
        "attach database '" + file.toUtf8().replace("'", "''") + "' as " + schema.toLatin1();
    if (!execute(attach)) {
        return false;
    }
    seed(schema, cipher);
    return m_error.isEmpty();
}

void LabDatabase::seed(const QString &schema, const LabCipher &cipher)
{
    const QByteArray s = schema.toLatin1() + '.';
    QByteArray columns = "DongleID text primary key, UseASR3Index default 1, CurrentVersion default 107, "
                         "DefaultRecEngine default 10, BDSR1DMaxUsageQuantity default 500, "
                         "BDFY1MMaxUsageQuantity default 5000, XFSR1DMaxUsageQuantity default 500, "
                         "TXSR1DMaxUsageQuantity default 500";
    for (const QByteArray &name : words(flagsOn)) {
        columns += ", " + name + " default 1";
    }
    for (const QByteArray &name : words(flagsOff)) {
        columns += ", " + name + " default 0";
    }
    for (const QByteArray &name : words(texts)) {
        columns += ", " + name + " text default ''";
    }
    execute("create table if not exists " + s + "device_serialid (" + columns + ")");
    for (const QByteArray &id : {QByteArray(DongleId), QByteArray(NoDeviceId)}) {
        execute("insert or ignore into " + s + "device_serialid (DongleID) values ('" + id + "')");
    }
    execute("create table if not exists " + s +
            "productrecord (CustomIndex, ProductionIndex, VoiceIntervalTime default 1000, TXSCD default '', "
            "TXSCK default '', VWebIntervalTime default 0, VWebSeed default 0, VWeb default '', "
            "ClickCanASR default 1, DownloadDrvWeb default '', UserManual default '', Website default '', "
            "SupportContact default '', SupportEmail default '', SWName default '', ShowCopyRight default 0, "
            "bdsrbdsssetlen default -1, bdsrbdsssetjslen default -1, bdsrbdsssetbzlen default -1, "
            "bdsrbdsssetschlen default -1, bdsrbdsssetenlen default -1, bdsrbdsssetyylen default -1, "
            "bdsrbdsssetttslen default -1, bdsrbdsssetfylen default -1, besrfdsssetlen default -1, "
            "primary key (CustomIndex, ProductionIndex))");
    execute("insert or ignore into " + s + "productrecord (CustomIndex, ProductionIndex) values (2, 1)");

    const QByteArray account = "'" + cipher.field(QLatin1String(BaiduAppId)) + "', '" +
                               cipher.field(QLatin1String(BaiduClientId)) + "', '" +
                               cipher.field(QLatin1String(BaiduClientSecret)) + "'";
    execute(
        "create table if not exists " + s +
        "bdasrid (F0 primary key, F1, F2, F3, sbj default 1, zbb default 1, yby default 1, nbe default 1, "
        "chbs default 1)");
    execute("insert or ignore into " + s + "bdasrid (F0, F1, F2, F3) values (" + account + ", 1)");
    execute("create table if not exists " + s + "wxfasrid (F0 primary key, F1, F2, F3, F4 default 1)");
    for (const auto &xunFei : XunFeiAccounts) {
        execute("insert or ignore into " + s + "wxfasrid (F0, F1, F2, F3, F4) values ('" +
                cipher.field(QLatin1String(xunFei[0])) + "', '" + cipher.field(QLatin1String(xunFei[1])) +
                "', '" + cipher.field(QLatin1String(xunFei[2])) + "', 1, " +
                (&xunFei == &XunFeiAccounts[1] ? "1" : "0") + ")");
    }
    execute("create table if not exists " + s + "bdasrttsid (F0 primary key, F1, F2, F3)");
    execute("insert or ignore into " + s + "bdasrttsid (F0, F1, F2, F3) values (" + account + ", 1)");
    execute("create table if not exists " + s + "bdasrfyid (F0 primary key, F1, F2 default 1)");
    execute("insert or ignore into " + s + "bdasrfyid (F0, F1) values ('" +
            cipher.field(QLatin1String(BaiduAppId)) + "', '" +
            cipher.field(QLatin1String(BaiduClientSecret)) + "')");
}

QJsonObject LabDatabase::run(const QByteArray &statement)
{
    const auto refused = [](const QString &why) {
        return QJsonObject{{QStringLiteral("items"), -1}, {QStringLiteral("error"), why}};
    };
    const QByteArray verb = statement.trimmed().left(6).toLower();
    if (verb != "select" && verb != "update" && verb != "insert") {
        return refused(QStringLiteral("only select, update and insert are run"));
    }
    sqlite3_stmt *prepared = nullptr;
    const char *tail = nullptr;
    if (sqlite3_prepare_v2(m_database, statement.constData(), statement.size() + 1, &prepared, &tail) !=
        SQLITE_OK) {
        return refused(QString::fromUtf8(sqlite3_errmsg(m_database)));
    }
    if (!QByteArray(tail).trimmed().isEmpty()) {
        sqlite3_finalize(prepared);
        return refused(QStringLiteral("more than one statement"));
    }
    QJsonObject result;
    int rows = 0;
    int state = SQLITE_ROW;
    while ((state = sqlite3_step(prepared)) == SQLITE_ROW) {
        QJsonObject row;
        for (int i = 0; i < sqlite3_column_count(prepared); ++i) {
            const auto *text = reinterpret_cast<const char *>(sqlite3_column_text(prepared, i));
            row.insert(QString::fromUtf8(sqlite3_column_name(prepared, i)), QString::fromUtf8(text));
        }
        result.insert(QStringLiteral("result%1").arg(rows++), row);
    }
    if (state != SQLITE_DONE) {
        sqlite3_finalize(prepared);
        return refused(QString::fromUtf8(sqlite3_errmsg(m_database)));
    }
    sqlite3_finalize(prepared);
    result.insert(QStringLiteral("items"), verb == "select" ? rows : sqlite3_changes(m_database));
    return result;
}

} // namespace lab
