#include "service/ProductRecord.h"

#include <QtTest>

class TestProductRecord : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void keyOfAnIdentity_data()
    {
        QTest::addColumn<QString>("identity");
        QTest::addColumn<QString>("key");
        QTest::newRow("decimal digits") << "02-01-001357"
                                        << "2,1";
        QTest::newRow("hexadecimal") << "0a-1f-000000"
                                     << "10,31";
        QTest::newRow("without a receiver") << "02-01--1"
                                            << "2,1";
        QTest::newRow("empty") << ""
                               << "";
        QTest::newRow("no number") << "zz-01-000000"
                                   << "";
        QTest::newRow("one group") << "02"
                                   << "";
        QTest::newRow("a quote that would end the statement") << "02' or '1-01-0"
                                                              << "";
    }
    void keyOfAnIdentity()
    {
        QFETCH(QString, identity);
        const auto key = mevo::productKey(identity);
        QTEST(key ? key->customIndex + QLatin1Char(',') + key->productionIndex : QString(), "key");
    }

    void heartbeatAndTalkButton_data()
    {
        QTest::addColumn<QString>("interval");
        QTest::addColumn<QString>("click");
        QTest::addColumn<int>("expectedInterval");
        QTest::addColumn<bool>("expectedClick");
        QTest::newRow("given") << "1500"
                               << "1" << 1500 << true;
        QTest::newRow("shortest") << "500"
                                  << "2" << 500 << true;
        QTest::newRow("too short") << "300"
                                   << "0" << 1000 << false;
        QTest::newRow("negative") << "-1"
                                  << "0" << 1000 << false;
        QTest::newRow("empty columns leave what stands") << ""
                                                         << "" << 800 << true;
        QTest::newRow("garbage leaves what stands") << "soon"
                                                    << "yes" << 800 << true;
        QTest::newRow("longest") << "60000"
                                 << "1" << 60000 << true;
        QTest::newRow("too long") << "60001"
                                  << "99999999999" << 800 << true;
    }
    void heartbeatAndTalkButton()
    {
        QFETCH(QString, interval);
        QFETCH(QString, click);
        MainState state;
        state.VoiceIntervalTime = 800;
        state.ClickCanASR = true;
        mevo::applyProductRecord(
            state, {{QStringLiteral("VoiceIntervalTime"), interval}, {QStringLiteral("ClickCanASR"), click}});
        QTEST(state.VoiceIntervalTime, "expectedInterval");
        QTEST(state.ClickCanASR, "expectedClick");
    }

    void textsAreKeptAndSizesTaken()
    {
        MainState state;
        state.Website = QStringLiteral("old");
        state.SupportEmail = QStringLiteral("stays");
        const auto settings = mevo::applyProductRecord(
            state, {{QStringLiteral("Website"), QStringLiteral("https://example.org")},
                    {QStringLiteral("SupportEmail"), QString()},
                    {QStringLiteral("SWName"), QStringLiteral("灵犀")},
                    {QStringLiteral("bdsrbdsssetbzlen"), QStringLiteral("321")},
                    {QStringLiteral("besrfdsssetlen"), 77}});
        QCOMPARE(settings.size(), 1);
        QCOMPARE(settings.first().key, QStringLiteral("Website"));
        QCOMPARE(state.Website, settings.first().value);
        QCOMPARE(state.SupportEmail, QStringLiteral("stays"));
        QCOMPARE(state.SWName, QStringLiteral("灵犀"));
        QCOMPARE(state.bdsrbdsssetbzlen, 321);
        QCOMPARE(state.besrfdsssetlen, 77);
        QCOMPARE(state.bdsrbdsssetenlen, -1);
    }

    void nonsenseIsPassedOver_data()
    {
        QTest::addColumn<QString>("column");
        QTest::addColumn<QJsonValue>("value");
        QTest::addColumn<bool>("taken");
        const auto text = [](int length) { return QJsonValue(QString(length, QLatin1Char('x'))); };
        const auto row = [](const char *name, const char *column, const QJsonValue &value, bool taken) {
            QTest::newRow(name) << QString::fromLatin1(column) << value << taken;
        };
        row("the longest text", "Website", text(255), true);
        row("a longer one", "Website", text(256), false);
        row("a megabyte", "SWName", text(1 << 20), false);
        row("a number for a text", "VWeb", 17, false);
        row("an object for a text", "UserManual", QJsonObject{{QStringLiteral("a"), 1}}, false);
        row("a list of accounts", "TXSCD", text(4096), true);
        row("a longer list", "TXSCK", text(4097), false);
        row("a day's delay", "VWebIntervalTime", QStringLiteral("86400000"), true);
        row("a longer delay", "VWebIntervalTime", QStringLiteral("86400001"), false);
        row("a negative delay", "VWebIntervalTime", QStringLiteral("-1"), false);
        row("a negative size", "besrfdsssetlen", QStringLiteral("-5"), false);
        row("a number beyond all", "VWebSeed", QStringLiteral("99999999999"), false);
    }
    void nonsenseIsPassedOver()
    {
        QFETCH(QString, column);
        QFETCH(QJsonValue, value);
        MainState state;
        state.Website = state.SWName = state.VWeb = state.UserManual = QStringLiteral("old");
        state.TXSCD = state.TXSCK = QStringLiteral("old");
        state.VWebIntervalTime = state.besrfdsssetlen = state.VWebSeed = 5;
        const auto settings = mevo::applyProductRecord(state, {{column, value}});
        const QString texts =
            state.Website + state.SWName + state.VWeb + state.UserManual + state.TXSCD + state.TXSCK;
        const bool changed = texts != QStringLiteral("old").repeated(6) || state.VWebIntervalTime != 5 ||
                             state.besrfdsssetlen != 5 || state.VWebSeed != 5;
        QTEST(changed, "taken");
        QCOMPARE(settings.isEmpty(), !changed || column != QLatin1String("Website"));
    }

    /// What the product lacks is kept for the settings page; a record that says nothing changes nothing.
    void whatTheProductLacks()
    {
        MainState state;
        const auto settings =
            mevo::applyProductRecord(state, {{QStringLiteral("NoMouse"), QStringLiteral("1")},
                                             {QStringLiteral("NoDirectLanes"), QStringLiteral("x")}});
        QCOMPARE(settings.size(), 2);
        QCOMPARE(settings[0].key + settings[0].value, QStringLiteral("NoMouse1"));
        QCOMPARE(settings[1].key + settings[1].value, QStringLiteral("NoDirectLanes0"));
        QVERIFY(mevo::applyProductRecord(state, {}).isEmpty());
    }
};

QTEST_APPLESS_MAIN(TestProductRecord)
#include "tst_product_record.moc"
