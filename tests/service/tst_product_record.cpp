#include "service/ProductRecord.h"
#include "support/Rows.h"

#include <QtTest>

class TestProductRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keyOfAnIdentity_data()
    {
        const Rows<QString, QString> row; // identity, expected
        row("decimal digits", "02-01-001357", "2,1");
        row("hexadecimal", "0a-1f-000000", "10,31");
        row("without a receiver", "02-01--1", "2,1");
        row("empty", "", "");
        row("no number", "zz-01-000000", "");
        row("one group", "02", "");
        row("a quote that would end the statement", "02' or '1-01-0", "");
    }
    void keyOfAnIdentity()
    {
        const auto [identity, expected] = rowOf<QString, QString>();
        const auto key = mevo::productKey(identity);
        QCOMPARE(key ? key->customIndex + QLatin1Char(',') + key->productionIndex : QString(), expected);
    }

    void heartbeatAndTalkButton_data()
    {
        const Rows<QString, QString, int, bool> row; // interval, click, expectedInterval, expectedClick
        row("given", "1500", "1", 1500, true);
        row("shortest", "500", "2", 500, true);
        row("too short", "300", "0", 1000, false);
        row("negative", "-1", "0", 1000, false);
        row("empty columns leave what stands", "", "", 800, true);
        row("garbage leaves what stands", "soon", "yes", 800, true);
        row("longest", "60000", "1", 60000, true);
        row("too long", "60001", "99999999999", 800, true);
    }
    void heartbeatAndTalkButton()
    {
        const auto [interval, click, expectedInterval, expectedClick] = rowOf<QString, QString, int, bool>();
        MainState state;
        state.VoiceIntervalTime = 800;
        state.ClickCanASR = true;
        mevo::applyProductRecord(state, {{"VoiceIntervalTime"_s, interval}, {"ClickCanASR"_s, click}});
        QCOMPARE(state.VoiceIntervalTime, expectedInterval);
        QCOMPARE(state.ClickCanASR, expectedClick);
    }

    void textsAreKeptAndSizesTaken()
    {
        MainState state;
        state.Website = "old"_s;
        state.SupportEmail = "stays"_s;
        const auto settings = mevo::applyProductRecord(state, {{"Website"_s, "https://example.org"_s},
                                                               {"SupportEmail"_s, QString()},
                                                               {"SWName"_s, "灵犀"_s},
                                                               {"bdsrbdsssetbzlen"_s, "321"_s},
                                                               {"besrfdsssetlen"_s, 77}});
        QCOMPARE(settings.size(), 1);
        QCOMPARE(settings.first().key, "Website"_s);
        QCOMPARE(state.Website, settings.first().value);
        QCOMPARE(state.SupportEmail, "stays"_s);
        QCOMPARE(state.SWName, "灵犀"_s);
        QCOMPARE(state.bdsrbdsssetbzlen, 321);
        QCOMPARE(state.besrfdsssetlen, 77);
        QCOMPARE(state.bdsrbdsssetenlen, -1);
    }

    void nonsenseIsPassedOver_data()
    {
        const Rows<QString, QJsonValue, bool> row; // column, value, taken
        const auto text = [](int length) { return QJsonValue(QString(length, QLatin1Char('x'))); };
        row("the longest text", "Website", text(255), true);
        row("a longer one", "Website", text(256), false);
        row("a megabyte", "SWName", text(1 << 20), false);
        row("a number for a text", "VWeb", 17, false);
        row("an object for a text", "UserManual", QJsonObject{{"a"_s, 1}}, false);
        row("a list of accounts", "TXSCD", text(4096), true);
        row("a longer list", "TXSCK", text(4097), false);
        row("a day's delay", "VWebIntervalTime", "86400000"_s, true);
        row("a longer delay", "VWebIntervalTime", "86400001"_s, false);
        row("a negative delay", "VWebIntervalTime", "-1"_s, false);
        row("a negative size", "besrfdsssetlen", "-5"_s, false);
        row("a number beyond all", "VWebSeed", "99999999999"_s, false);
    }
    void nonsenseIsPassedOver()
    {
        const auto [column, value, taken] = rowOf<QString, QJsonValue, bool>();
        MainState state;
        state.Website = state.SWName = state.VWeb = state.UserManual = "old"_s;
        state.TXSCD = state.TXSCK = "old"_s;
        state.VWebIntervalTime = state.besrfdsssetlen = state.VWebSeed = 5;
        const auto settings = mevo::applyProductRecord(state, {{column, value}});
        const QString texts =
            state.Website + state.SWName + state.VWeb + state.UserManual + state.TXSCD + state.TXSCK;
        const bool changed = texts != "old"_s.repeated(6) || state.VWebIntervalTime != 5 ||
                             state.besrfdsssetlen != 5 || state.VWebSeed != 5;
        QCOMPARE(changed, taken);
        QCOMPARE(settings.isEmpty(), !changed || column != QLatin1String("Website"));
    }

    /// What the product lacks is kept for the settings page; a record that says nothing changes nothing.
    void whatTheProductLacks()
    {
        MainState state;
        const auto settings =
            mevo::applyProductRecord(state, {{"NoMouse"_s, "1"_s}, {"NoDirectLanes"_s, "x"_s}});
        QCOMPARE(settings.size(), 2);
        QCOMPARE(settings[0].key + settings[0].value, "NoMouse1"_s);
        QCOMPARE(settings[1].key + settings[1].value, "NoDirectLanes0"_s);
        QVERIFY(mevo::applyProductRecord(state, {}).isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestProductRecord)
#include "tst_product_record.moc"
