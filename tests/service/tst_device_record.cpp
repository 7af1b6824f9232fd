#include "service/CountingDay.h"
#include "service/RecordAddresses.h"
#include "service/RecordColumns.h"
#include "service/RecordVersion.h"
#include "service/WebApiReply.h"
#include "support/Rows.h"

#include <QJsonArray>
#include <QtTest>

namespace {

/// Every column that is taken over, and where it lands, told apart from the program's own table.
QMap<QString, int> numbersOf(const MainState &s)
{
    return {{"ForceUseXFMore3V"_s, s.ForceUseXFMore3V},
            {"ShowASR3Custom"_s, s.ShowASR3Custom},
            {"ShowXunFeiInputMethod"_s, s.ShowXunFeiInputMethod},
            {"ShowSogouInputMethod"_s, s.ShowSogouInputMethod},
            {"ShowBaiduI"_s, s.ShowBaiduI},
            {"ShowTXI"_s, s.ShowTXI},
            {"ShowXFWebApi"_s, s.ShowXFWebApi},
            {"ShowTecentZhDialect"_s, s.ShowTecentZhDialect},
            {"ShowPowerLevel"_s, s.ShowPowerLevel},
            {"ShowPowerLow"_s, s.ShowPowerLow},
            {"ShowBdFtPTHI"_s, s.ShowBdFtPTHI},
            {"ShowBdSdPTHI"_s, s.ShowBdSdPTHI},
            {"ShowBdYYI"_s, s.ShowBdYYI},
            {"ShowBdSCHI"_s, s.ShowBdSCHI},
            {"ShowBdEnI"_s, s.ShowBdEnI},
            {"UseASR3Index"_s, s.UseASR3Index},
            {"ForceUseASR3"_s, s.ForceUseASR3},
            {"EnableASR3"_s, s.EnableASR3},
            {"ShowASR3UI"_s, s.ShowASR3UI},
            {"MustClickRunASR3"_s, s.MustClickRunASR3},
            {"EnableAutoCallASR3"_s, s.EnableAutoCallASR3},
            {"UseBDAPIPara"_s, s.UseBDAPIPara},
            {"UseXFSDKPara"_s, s.UseXFSDKPara},
            {"UseTXAPIPara"_s, s.UseTXAPIPara},
            {"UseXFWAPIPara"_s, s.UseXFWAPIPara},
            {"UseBDFstPara"_s, s.UseBDFstPara},
            {"UseXFWPIDWAPara"_s, s.UseXFWPIDWAPara},
            {"HideXFSDK"_s, s.HideXFSDK},
            {"ShowXFDialect"_s, s.ShowXFDialect},
            {"ShowXFSmallLan"_s, s.ShowXFSmallLan},
            {"HW2ScreenIntervalTime"_s, s.HW2ScreenIntervalTime},
            {"Asr2ScreenIntervalTime"_s, s.Asr2ScreenIntervalTime},
            {"ShowAssistInfo"_s, s.ShowAssistInfo},
            {"AutoUpdateSwitch"_s, s.AutoUpdateSwitch},
            {"ManualUpdateSwitch"_s, s.ManualUpdateSwitch},
            {"ForceUpdate"_s, s.ForceUpdate},
            {"BDSR1DUsedQuantity"_s, s.BDSR1DUsedQuantity},
            {"BDSR1DMaxUsageQuantity"_s, s.BDSR1DMaxUsageQuantity},
            {"BDFY1MUsedQuantity"_s, s.BDFY1MUsedQuantity},
            {"BDFY1MMaxUsageQuantity"_s, s.BDFY1MMaxUsageQuantity},
            {"XFSR1DUsedQuantity"_s, s.XFSR1DUsedQuantity},
            {"XFSR1DMaxUsageQuantity"_s, s.XFSR1DMaxUsageQuantity},
            {"TXSR1DUsedQuantity"_s, s.TXSR1DUsedQuantity},
            {"TXSR1DMaxUsageQuantity"_s, s.TXSR1DMaxUsageQuantity}};
}

const QStringList wideColumns = {"UseBDAPIPara"_s,          "UseXFSDKPara"_s,
                                 "UseTXAPIPara"_s,          "UseXFWAPIPara"_s,
                                 "UseBDFstPara"_s,          "UseXFWPIDWAPara"_s,
                                 "ShowXFDialect"_s,         "ShowXFSmallLan"_s,
                                 "HW2ScreenIntervalTime"_s, "Asr2ScreenIntervalTime"_s,
                                 "ShowAssistInfo"_s,        "AutoUpdateSwitch"_s,
                                 "ManualUpdateSwitch"_s,    "ForceUpdate"_s,
                                 "BDSR1DUsedQuantity"_s,    "BDSR1DMaxUsageQuantity"_s,
                                 "BDFY1MUsedQuantity"_s,    "BDFY1MMaxUsageQuantity"_s,
                                 "XFSR1DUsedQuantity"_s,    "XFSR1DMaxUsageQuantity"_s,
                                 "TXSR1DUsedQuantity"_s,    "TXSR1DMaxUsageQuantity"_s};
const QStringList shapesMenu = {"ShowASR3Custom"_s,
                                "ShowXunFeiInputMethod"_s,
                                "ShowSogouInputMethod"_s,
                                "ShowBaiduI"_s,
                                "ShowTXI"_s,
                                "ShowXFWebApi"_s,
                                "ShowASR3UI"_s,
                                "ShowTecentZhDialect"_s,
                                "ShowBdFtPTHI"_s,
                                "ShowBdSdPTHI"_s,
                                "ShowBdYYI"_s,
                                "ShowBdSCHI"_s,
                                "ShowBdEnI"_s,
                                "EnableASR3"_s};

const char *const serverColumns[][3] = {
    {"ORVSCHEMANAME", "ORVDB", "newdb"},
    {"TALKINSERVER", "TKS", "http://new.example:19004/mevowebapi?"},
    {"TALKINSERVER_BK1", "TKSBK1", "http://new1.example:19004/mevowebapi?"},
    {"TALKINSERVER_BK2", "TKSBK2", "https://new2.example/mevowebapi?"},
    {"VERSIONCHECKURL", "VAD", "http://new.example:19004/NewVersion"},
    {"VERSIONCHECKURL1", "VAD1", "http://new1.example:19004/NewVersion"},
    {"DOWNLOADFILE_MANUALDOWN_ADDRESS", "DAD", "http://new.example:19004/NewVersion_Manual"},
    {"DOWNLOADFILE_MANUALDOWN_ADDRESS1", "DAD1", "http://new1.example:19004/NewVersion_Manual"},
    {"ORVWSURL", "ORVWSURL", "ws://new.example:19006"},
};

QStringList texts(const QVector<mevo::AddressChange> &changes)
{
    QStringList all;
    for (const mevo::AddressChange &change : changes) {
        all.append(change.key + QLatin1Char('=') + change.text);
    }
    return all;
}

QString nothingStored(const QString &)
{
    return {};
}

} // namespace

class TestDeviceRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void eachColumnFillsItsMemberAndNoOther()
    {
        const QStringList columns = numbersOf({}).keys();
        QCOMPARE(columns.size(), 44);
        for (const QString &column : columns) {
            MainState state;
            QMap<QString, int> expected = numbersOf(state);
            const bool wide = wideColumns.contains(column);
            const int value = column == QLatin1String("UseASR3Index") ? 2 : wide ? 41 : 1 - expected[column];
            expected[column] = value;
            const auto effects = mevo::applyRecordColumns(state, {{column, QString::number(value)}}, false);
            QVERIFY2(numbersOf(state) == expected, qPrintable(column));
            QVERIFY2(effects.menuChanged == shapesMenu.contains(column), qPrintable(column));
            const bool kept =
                column.endsWith(QLatin1String("IntervalTime")) || column == QLatin1String("ForceUseXFMore3V");
            QVERIFY2(effects.settings.size() == int(kept), qPrintable(column));
            if (kept) {
                QVERIFY(effects.settings[0].key == column && effects.settings[0].value == value);
            }
        }
        MainState state;
        mevo::applyRecordColumns(state,
                                 {{"BDSR1DUsedQuantity"_s, 1},
                                  {"TXSR1DUsedQuantity"_s, 2},
                                  {"XFSR1DUsedQuantity"_s, 3},
                                  {"BDFY1MUsedQuantity"_s, 4},
                                  {"IPRecord"_s, "192.0.2.9"_s},
                                  {"LastLoginDateTime"_s, "2026-11-24T08:00:00"_s}},
                                 false);
        QCOMPARE(state.BDSR1DReadQuantity * 1000 + state.TXSR1DReadQuantity * 100 +
                     state.XFSR1DReadQuantity * 10 + state.BDFY1MReadQuantity,
                 1234);
        QCOMPARE(state.IPRecord, "192.0.2.9"_s);
        QCOMPARE(state.LastLoginDateTime, "2026-11-24T08:00:00"_s);
    }

    void nonsenseLeavesEverything_data()
    {
        QTest::addColumn<QJsonValue>("value");
        QTest::newRow("absent") << QJsonValue(QJsonValue::Undefined);
        QTest::newRow("null") << QJsonValue(QJsonValue::Null);
        QTest::newRow("empty") << QJsonValue(QString());
        QTest::newRow("a word") << QJsonValue("yes"_s);
        QTest::newRow("a fraction") << QJsonValue(0.5);
        QTest::newRow("hexadecimal") << QJsonValue("0x10"_s);
        QTest::newRow("a JSON flag") << QJsonValue(true);
        QTest::newRow("a list") << QJsonValue(QJsonArray{1});
        QTest::newRow("an object") << QJsonValue(QJsonObject{{"a"_s, 1}});
        QTest::newRow("huge") << QJsonValue("99999999999"_s);
        QTest::newRow("very small") << QJsonValue(-1e300);
        QTest::newRow("1 MB") << QJsonValue(QString(1000000, QLatin1Char('7')));
        QTest::newRow("a page") << QJsonValue("<!DOCTYPE html><html>"_s);
        QTest::newRow("NUL") << QJsonValue(QString(QChar(0)));
    }

    void nonsenseLeavesEverything()
    {
        QFETCH(QJsonValue, value);
        QJsonObject row;
        for (const QString &column : numbersOf({}).keys()) {
            row.insert(column, value);
        }
        for (const auto &column : serverColumns) {
            row.insert(QLatin1String(column[0]), value);
        }
        for (const bool inForce : {true, false}) { // whatever the user has made of the input methods
            MainState state;
            state.EnableASR3 = true;
            state.LocalEnableASR3 = inForce;
            state.UseASR3Index = 3;
            state.ShowASR3Custom = false;
            state.EnableAutoCallASR3 = state.MustClickRunASR3 = true;
            const QMap<QString, int> before = numbersOf(state);
            const auto effects = mevo::applyRecordColumns(state, row, false);
            QCOMPARE(numbersOf(state), before);
            QVERIFY(effects.settings.isEmpty() && !effects.menuChanged);
            QCOMPARE(state.LocalEnableASR3, inForce);
        }
        MainState state;
        for (const mevo::AddressChange &change : mevo::changedAddresses(row, nothingStored)) {
            QCOMPARE(change.key + change.text, "ORVDByes"_s); // a schema may be called so
        }
        mevo::applyRecordColumns(state, {{"IPRecord"_s, QString(1000000, QLatin1Char('7'))}}, false);
        QVERIFY(state.IPRecord.isEmpty());
    }

    void numbersOutOfRangeAreLeft_data()
    {
        const Rows<QString, int, bool> row; // column, value, taken
        row("no delay", "HW2ScreenIntervalTime"_s, 0, true);
        row("a negative delay", "HW2ScreenIntervalTime"_s, -1, false);
        row("a negative delay of keys", "Asr2ScreenIntervalTime"_s, -1, false);
        row("the longest delay", "Asr2ScreenIntervalTime"_s, 60000, true);
        row("a delay without an end", "Asr2ScreenIntervalTime"_s, 60001, false);
        row("a count that counting overflows", "BDSR1DUsedQuantity"_s, 2147483647, false);
        row("a negative count", "TXSR1DUsedQuantity"_s, -1, false);
        row("no input method", "UseASR3Index"_s, -1, true);
        row("an unknown input method", "UseASR3Index"_s, 4, false);
        row("a flag of two", "HideXFSDK"_s, 2, true);
    }

    void numbersOutOfRangeAreLeft()
    {
        const auto [column, value, taken] = rowOf<QString, int, bool>();
        MainState state;
        state.HW2ScreenIntervalTime = state.Asr2ScreenIntervalTime = 30;
        const int before = numbersOf(state).value(column);
        const auto effects = mevo::applyRecordColumns(state, {{column, QString::number(value)}}, false);
        QCOMPARE(numbersOf(state).value(column), !taken                                 ? before
                                                 : column == QLatin1String("HideXFSDK") ? 1
                                                                                        : value);
        QVERIFY(taken || effects.settings.isEmpty());
    }

    void inputMethods_data()
    {
        // row, xpClass, expected (enabled, in force, must click, newer XunFei)
        const Rows<QJsonObject, bool, QString> add;
        const auto row = [&](const char *name, std::initializer_list<QPair<QString, QJsonValue>> columns,
                             const QString &expected,
                             bool xpClass = false) { add(name, QJsonObject(columns), xpClass, expected); };
        row("on", {{"EnableASR3"_s, "1"_s}}, "1100"_s);
        row("off", {{"EnableASR3"_s, "0"_s}}, "0000"_s);
        row("custom and hidden",
            {{"EnableASR3"_s, "1"_s}, {"UseASR3Index"_s, "3"_s}, {"ShowASR3Custom"_s, "0"_s}}, "0000"_s);
        row("custom and shown",
            {{"EnableASR3"_s, "1"_s}, {"UseASR3Index"_s, "3"_s}, {"ShowASR3Custom"_s, "1"_s}}, "1100"_s);
        row("hidden, another one",
            {{"EnableASR3"_s, "1"_s}, {"UseASR3Index"_s, "2"_s}, {"ShowASR3Custom"_s, "0"_s}}, "1100"_s);
        row("a click is wanted", {{"MustClickRunASR3"_s, "1"_s}, {"EnableAutoCallASR3"_s, "0"_s}}, "0010"_s);
        row("called unasked", {{"MustClickRunASR3"_s, "1"_s}, {"EnableAutoCallASR3"_s, "1"_s}}, "0000"_s);
        row("newer XunFei", {{"ForceUseXFMore3V"_s, "1"_s}}, "0001"_s);
        row("not on XP", {{"ForceUseXFMore3V"_s, "1"_s}}, "0000"_s, true);
    }

    void inputMethods()
    {
        const auto [row, xpClass, expected] = rowOf<QJsonObject, bool, QString>();
        MainState state;
        const auto effects = mevo::applyRecordColumns(state, row, xpClass);
        QCOMPARE("%1%2%3%4"_s.arg(state.EnableASR3)
                     .arg(state.LocalEnableASR3)
                     .arg(state.MustClickRunASR3)
                     .arg(state.ForceUseXFMore3V),
                 expected);
        if (row.contains("ForceUseXFMore3V"_s)) {
            QCOMPARE(effects.settings.value(0).value, int(state.ForceUseXFMore3V));
        }
    }

    void aNewRecordHasItsDefaults()
    {
        MainState state;
        QJsonObject row;
        for (const QString &column : numbersOf({}).keys()) {
            row.insert(column, "1"_s);
        }
        mevo::applyRecordColumns(state, row, false);
        const QMap<QString, int> before = numbersOf(state);
        mevo::applyNewRecord(state);
        QMap<QString, int> expected = {{"BDSR1DMaxUsageQuantity"_s, 500},
                                       {"BDFY1MMaxUsageQuantity"_s, 5000},
                                       {"TXSR1DMaxUsageQuantity"_s, 500},
                                       {"XFSR1DMaxUsageQuantity"_s, 500},
                                       {"BDSR1DUsedQuantity"_s, 0},
                                       {"BDFY1MUsedQuantity"_s, 0},
                                       {"TXSR1DUsedQuantity"_s, 0},
                                       {"XFSR1DUsedQuantity"_s, 0},
                                       {"UseASR3Index"_s, 1},
                                       {"ForceUseASR3"_s, 1},
                                       {"EnableASR3"_s, 0},
                                       {"MustClickRunASR3"_s, 0},
                                       {"ShowASR3UI"_s, 1},
                                       {"EnableAutoCallASR3"_s, 1}};
        for (const QString &column : before.keys()) {
            expected.insert(column, expected.value(column, before.value(column)));
        }
        QCOMPARE(numbersOf(state), expected);
    }

    void otherServersAreNamedInTheirOrder()
    {
        QJsonObject row;
        QStringList all;
        QMap<QString, QString> stored;
        for (const auto &column : serverColumns) {
            row.insert(QLatin1String(column[0]), QLatin1String(column[2]));
            all.append(QLatin1String(column[1]) + QLatin1Char('=') + QLatin1String(column[2]));
            stored.insert(QLatin1String(column[1]), QLatin1String(column[2]));
        }
        QCOMPARE(texts(mevo::changedAddresses(row, nothingStored)), all);
        const auto lookUp = [&](const QString &key) { return stored.value(key); };
        QVERIFY(mevo::changedAddresses(row, lookUp).isEmpty());
        stored.remove("DAD"_s);
        row.insert("TALKINSERVER"_s, "http://other.example/?"_s);
        QCOMPARE(texts(mevo::changedAddresses(row, lookUp)),
                 QStringList({"TKS=http://other.example/?"_s, all[6]}));
    }

    void whatCanBeNoServerIsLeft_data()
    {
        const Rows<QString, QString> row; // column, text
        row("a word", "TALKINSERVER"_s, "nonsense"_s);
        row("no host", "TALKINSERVER"_s, "http:///mevowebapi?"_s);
        row("a file", "TALKINSERVER_BK1"_s, "file:///etc/passwd"_s);
        row("a socket for the web API", "TALKINSERVER_BK2"_s, "ws://a.example"_s);
        row("a page for the socket", "ORVWSURL"_s, "http://a.example"_s);
        row("blanks in it", "VERSIONCHECKURL"_s, "http://a b.example/"_s);
        row("longer than its field", "VERSIONCHECKURL"_s,
            "http://a.example/"_s + QString(1000, QLatin1Char('x')));
        row("a statement for a schema", "ORVSCHEMANAME"_s, "x; drop table y"_s);
        row("a line end in the schema", "ORVSCHEMANAME"_s, "db\n"_s);
    }

    void whatCanBeNoServerIsLeft()
    {
        const auto [column, text] = rowOf<QString, QString>();
        QVERIFY(mevo::changedAddresses({{column, text}}, nothingStored).isEmpty());
    }

    void versions_data()
    {
        const Rows<QJsonValue, int> add; // value, expected
        using V = mevo::RecordVersion;
        const auto row = [&](const char *name, const QJsonValue &value, V expected) {
            add(name, value, int(expected));
        };
        row("own", "107"_s, V::Current);
        row("own as a number", 107, V::Current);
        row("0", "0"_s, V::Offer);
        row("1", "1"_s, V::Page);
        row("2", "2"_s, V::Required);
        row("3", "3"_s, V::LaterPage);
        row("older", "106"_s, V::WriteOwn);
        row("newer", "108"_s, V::WriteOwn);
        row("negative", "-1"_s, V::WriteOwn);
        row("a word", "soon"_s, V::WriteOwn);
        row("empty", ""_s, V::WriteOwn);
        row("null", QJsonValue(), V::Current);
        row("absent", QJsonValue(QJsonValue::Undefined), V::Current);
    }

    void versions()
    {
        const auto [value, expected] = rowOf<QJsonValue, int>();
        QCOMPARE(int(mevo::recordVersion({{"CurrentVersion"_s, value}}, 107)), expected);
    }

    void theDay_data()
    {
        const Rows<QString, bool> row; // began, over
        row("this second", "2026-11-24 09:00:00"_s, false);
        row("an hour ago", "2026-11-24 08:00:00"_s, false);
        row("past midnight", "2026-11-23 23:59:59"_s, false);
        row("24 h less a second", "2026-11-23 09:00:01"_s, false);
        row("24 h exactly", "2026-11-23 09:00:00"_s, false);
        row("24 h and a second", "2026-11-23 08:59:59"_s, true);
        row("25 h", "2026-11-23 08:00:00"_s, true);
        row("years ago", "1970-01-01 00:00:00"_s, true);
        row("with a T", "2026-11-23T09:00:00"_s, false);
        row("with a T, over", "2026-11-23T08:59:59"_s, true);
        row("with a fraction and a zone", "2026-11-24T08:59:59.123Z"_s, false);
        row("a clock set back by a second", "2026-11-24 09:00:01"_s, true);
        row("a clock set back by years", "2031-01-01 00:00:00"_s, true);
        row("empty", ""_s, true);
        row("a word", "yesterday"_s, true);
        row("no such day", "2026-02-30 10:00:00"_s, true);
        row("1 MB", QString(1000000, QLatin1Char('2')), true);
    }

    void theDay()
    {
        const auto [began, over] = rowOf<QString, bool>();
        QCOMPARE(mevo::isDayOver(began, QDateTime(QDate(2026, 11, 24), QTime(9, 0))), over);
    }
};

QTEST_APPLESS_MAIN(TestDeviceRecord)
#include "tst_device_record.moc"
