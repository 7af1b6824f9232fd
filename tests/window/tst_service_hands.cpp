#include "audio/AudioRecorder.h"
#include "base/SettingsFile.h"
#include "service/WebCipher.h"
#include "session/KeyReport.h"
#include "support/FakePlatform.h"
#include "support/ScratchHome.h"
#include "support/ScriptedHttp.h"
#include "ui/Ask.h"
#include "ui/MicTipDialog.h"
#include "window/MainWindow.h"

#include <QAction>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QScopedValueRollback>
#include <QtTest>

namespace {

const ScratchHome home;
const WebCipher cipher;

QStringList list(std::initializer_list<const char *> texts)
{
    QStringList strings;
    for (const char *each : texts) {
        strings.append(QString::fromUtf8(each));
    }
    return strings;
}

QJsonObject oneRow(const QJsonObject &row)
{
    return {{QStringLiteral("items"), 1}, {QStringLiteral("result0"), row}};
}

/// The backend at its three addresses, /main, /bk1 and /bk2 of one server, and Baidu's tokens. It notes what
/// it is asked, by the order of arrival: "ADDRESS STATEMENT" and "token CLIENT".
class Backend
{
public:
    explicit Backend(CallLog &log)
        : m_log(log)
    {
        server.answering = [this](const ScriptedRequest &request) { return answer(request); };
    }

    ScriptedHttp server;
    QStringList down; ///< addresses that answer an error
    QJsonObject product{{QStringLiteral("ClickCanASR"), QStringLiteral("1")},
                        {QStringLiteral("VoiceIntervalTime"), QStringLiteral("700")}};
    QJsonObject record{{QStringLiteral("UseTXAPIPara"), QStringLiteral("1")},
                       {QStringLiteral("IPRecord"), QStringLiteral("192.0.2.9")}};
    QStringList asked;
    int delayMs = 0;        ///< before an answer is sent
    bool holdToken = false; ///< tokens wait for server.answerHeld()

    QStringList askedLike(const QString &part) const { return asked.filter(part); }
    /// The counters among what was asked, without address and time: "BDSR1DUsedQuantity=3 flush" for one that
    /// tells the time of use as well.
    QStringList counters() const
    {
        static const QRegularExpression expression(QStringLiteral(
            "^main update mevodb\\.device_serialid set (\\w+UsedQuantity=\\d+)"
            "(,LatestLoginTime='2026-11-24 09:00:\\d\\d',CurrentVersion=107,CurrentSubVer='.+')? "
            "where DongleID='(.+)'$"));
        QStringList found;
        for (const QString &each : askedLike(QStringLiteral("UsedQuantity="))) {
            const QRegularExpressionMatch match = expression.match(each);
            found.append(match.hasMatch()
                             ? match.captured(1) +
                                   (match.captured(2).isEmpty() ? QString() : QStringLiteral(" flush"))
                             : QStringLiteral("? ") + each);
        }
        found.sort(); // those of one moment go over connections of their own
        return found;
    }

private:
    ScriptedAnswer answer(const ScriptedRequest &request)
    {
        if (request.target.startsWith("/oauth")) {
            static const QRegularExpression client(QStringLiteral("client_id=([^&]*)"));
            asked.append(QStringLiteral("token ") +
                         client.match(QString::fromLatin1(request.body)).captured(1));
            const ScriptedAnswer token = ScriptedAnswer::body(R"({"access_token":"24.fresh"})");
            return holdToken ? ScriptedAnswer::late(token) : delayed(token);
        }
        const QByteArray address = request.target.mid(1, request.target.indexOf('?') - 1);
        const QByteArray rest = request.target.mid(request.target.indexOf("___") + 3);
        const QString statement = cipher.DecryptString(QString::fromLatin1(rest.right(rest.size() & ~31)));
        asked.append(QString::fromLatin1(address) + QLatin1Char(' ') + statement);
        m_log.add(QStringLiteral("asked ") + statement);
        if (down.contains(QString::fromLatin1(address))) {
            return ScriptedAnswer::body({}, 503);
        }
        QJsonObject reply{{QStringLiteral("items"), 1}, {QStringLiteral("result"), QStringLiteral("107")}};
        if (statement.contains(QLatin1String("productrecord"))) {
            reply = oneRow(product);
        } else if (statement.startsWith(QLatin1String("select *"))) {
            reply = oneRow(record);
        } else if (statement.startsWith(QLatin1String("select F0"))) {
            QJsonObject account;
            const QString name = statement.section(u' ', -3, -3); // a Baidu list's column
            for (int i = 0; i < 3; ++i) {
                account.insert(QStringLiteral("F%1").arg(i), mevo::encipherField(cipher, name));
            }
            reply = oneRow(account);
        }
        const QString json = QString::fromUtf8(QJsonDocument(reply).toJson(QJsonDocument::Compact));
        const QByteArray hex = cipher.EncryptString(json).toLatin1();
        return delayed(ScriptedAnswer::body(QByteArray::number(hex.size()).rightJustified(5, '0') + hex));
    }

    ScriptedAnswer delayed(const ScriptedAnswer &answer)
    {
        if (delayMs == 0) {
            return answer;
        }
        QTimer::singleShot(delayMs, &server, [this] { server.answerHeld(); });
        return ScriptedAnswer::late(answer);
    }

    CallLog &m_log;
};

/// The program with a receiver, or without, and a backend.
struct Program
{
    FakePlatform fake;
    Backend backend{fake.log};
    std::unique_ptr<MainWindow> window;

    explicit Program(bool plugged = true, const QByteArray &settings = {})
    {
        for (const char *file : {"besrfdssset.ini", "besrfdsssetFYSL.ini", "bjsdsrbdssset.ini",
                                 "bbzdsrbdssset.ini", "byydsrbdssset.ini", "bendsrbdssset.ini",
                                 "bschdsrbdssset.ini", "bdsrbdsssettts.ini", "bdsrbdsssetfy.ini"}) {
            home.remove(QLatin1String(file));
        }
        const QByteArray host = backend.server.host().toLatin1();
        home.write(QStringLiteral("MEVOEndpoints.ini"),
                   "[Endpoints]\nBackendUrl=\"http://" + host + "/main?\"\nBackendUrlBk1=\"http://" + host +
                       "/bk1?\"\nBackendUrlBk2=\"http://" + host +
                       "/bk2?\"\nBaiduSpeechHost=127.0.0.1:9\nBaiduTokenHost=" + host + "\n");
        home.write(QStringLiteral("MEVOSetting.ini"),
                   "[MainSetting]\nBaiDuNoStreamApi=1\nUseTXASRApi=0\nBaiDuCurrentVoiceType=1537\n" +
                       settings);
        if (plugged) {
            fake.hid->entries = FakeHid::receiver();
            fake.hid->identityReply = QByteArray::fromHex("010c5713000100020000000000000000");
        }
        mevo::askHook = [](const mevo::Question &) { return 2; };
    }
    ~Program()
    {
        window.reset();
        mevo::askHook = nullptr;
        // An exit has told the application to quit; a pass of its loop lets the next program wait again.
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
    }
    MainWindow &start()
    {
        window = std::make_unique<MainWindow>(fake.platform);
        return *window;
    }
    /// Starts, sets the engine flags told ("B", "T", "X") and forgets what was asked so far.
    MainWindow &startWith(const QString &engines)
    {
        start();
        AudioRecorder &recorder = *window->recorder();
        recorder.BaiDuNoStreamApi = engines.contains(u'B');
        recorder.UseTXASRApi = engines.contains(u'T');
        recorder.UseXunFeiWebApi = engines.contains(u'X');
        window->BDSR1DUsedQuantity = 3;
        window->TXSR1DUsedQuantity = 4;
        window->XFSR1DUsedQuantity = 5;
        backend.asked.clear();
        fake.log.clear();
        return *window;
    }
    void choose(const QString &row)
    {
        for (QAction *action : window->languageMenu()->actions()) {
            if (action->text() == row) {
                action->trigger();
                QCoreApplication::processEvents(); // the choice is made from the event loop
                return;
            }
        }
        QFAIL(qPrintable(QStringLiteral("no row ") + row));
    }
    static QString setting(const char *key)
    {
        return mevo::SettingsFile().value(QLatin1String(key)).toString();
    }
};

const QString latchOff = QStringLiteral("hid send 05 20 08 00 00 00 00 00");
const QString readProduct =
    QStringLiteral("select * from mevodb.productrecord where CustomIndex=2 and ProductionIndex=1");
const QString readRecord =
    QStringLiteral("select * from mevodb.device_serialid where DongleID='02-01-001357'");

} // namespace

class TestServiceHands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void aStartAsksInItsOrder()
    {
        Program program;
        const MainWindow &window = program.start();
        QStringList asked = program.backend.asked;
        QVERIFY2(asked.size() == 15, qPrintable(asked.join(u'\n')));
        QCOMPARE(asked.takeFirst(), QStringLiteral("main newGetNewVer"));
        QCOMPARE(asked.takeFirst(), QStringLiteral("main ") + readProduct);
        QStringList lists = asked.mid(0, 9); // these go side by side
        lists.sort();
        QCOMPARE(lists, (list({"main select F0,F1 from mevodb.bdasrfyid where F2 = 1",
                               "main select F0,F1,F2 from mevodb.bdasrid where F3 = 1 and chbs = 1",
                               "main select F0,F1,F2 from mevodb.bdasrid where F3 = 1 and nbe = 1",
                               "main select F0,F1,F2 from mevodb.bdasrid where F3 = 1 and sbj = 1",
                               "main select F0,F1,F2 from mevodb.bdasrid where F3 = 1 and yby = 1",
                               "main select F0,F1,F2 from mevodb.bdasrid where F3 = 1 and zbb = 1",
                               "main select F0,F1,F2 from mevodb.bdasrttsid where F3 = 1",
                               "main select F0,F1,F2 from mevodb.wxfasrid where F3 = 1",
                               "main select F0,F1,F2 from mevodb.wxfasrid where F3 = 1 and F4 = 1"})));
        asked = asked.mid(9);
        QCOMPARE(asked.takeFirst(), QStringLiteral("token zbb"));
        QVERIFY(asked.takeFirst().startsWith(QLatin1String("token ")));
        QCOMPARE(asked.takeFirst(), QStringLiteral("main ") + readRecord);
        const QRegularExpression address(
            QStringLiteral("^main update mevodb\\.device_serialid set IPRecord='[0-9a-f.:]+' where "
                           "DongleID='02-01-001357'$"));
        QVERIFY2(address.match(asked.first()).hasMatch(), qPrintable(asked.first()));
        QVERIFY(window.ClickCanASR && window.NoDeviceMode);
        QCOMPARE(window.VoiceIntervalTime, 700);
        QVERIFY(window.recorder()->UseTXASRApi && !window.recorder()->BaiDuNoStreamApi);
        QVERIFY(!window.IPRecord.isEmpty() && window.IPRecord != QLatin1String("192.0.2.9"));
        QTest::qWait(50);
        QCOMPARE(program.backend.asked.size(), 15); // nothing is asked again
    }

    void whatIsLateIsReadBehindTheBar()
    {
        // Each answer takes longer than the start waits for all of them.
        const QScopedValueRollback<int> wait(MainWindow::startWaitMs, 100);
        Program program;
        program.backend.delayMs = 250;
        QElapsedTimer time;
        time.start();
        const MainWindow &window = program.start();
        QVERIFY2(time.elapsed() < 5 * 250, qPrintable(QString::number(time.elapsed())));
        QVERIFY(window.InitDone);
        QVERIFY(!window.ClickCanASR && window.BaiduAccessToken.isEmpty() && !window.recorder()->UseTXASRApi);
        QTRY_VERIFY_WITH_TIMEOUT(window.ClickCanASR, 10000);
        QTRY_COMPARE_WITH_TIMEOUT(window.BaiduAccessToken, QStringLiteral("24.fresh"), 10000);
        QTRY_VERIFY_WITH_TIMEOUT(window.recorder()->UseTXASRApi, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(!program.backend.askedLike(QStringLiteral("IPRecord")).isEmpty(), 10000);
        QVERIFY(!home.read(QStringLiteral("bbzdsrbdssset.ini")).isEmpty());
    }

    void aChoiceDuringTheReadingOfTheRecordHolds()
    {
        Program program;
        MainWindow &window = program.startWith(QStringLiteral("B"));
        program.backend.server.onRequest = [&](const ScriptedRequest &) {
            program.backend.server.onRequest = nullptr;
            QTimer::singleShot(0, &window, [&] { program.choose(QStringLiteral("英语(讯飞版)")); });
        };
        program.backend.delayMs = 100;
        window.ReadServerInfo(); // the row says Tencent
        QVERIFY(window.recorder()->UseXunFeiWebApi && !window.recorder()->UseTXASRApi);
    }

    void theProductRecordComesFromEachAddress_data()
    {
        QTest::addColumn<QStringList>("down");
        QTest::addColumn<QString>("from");
        QTest::newRow("main") << QStringList() << "main";
        QTest::newRow("first backup") << list({"main"}) << "bk1";
        QTest::newRow("second backup") << list({"main", "bk1"}) << "bk2";
        QTest::newRow("none") << list({"main", "bk1", "bk2"}) << QString();
    }

    void theProductRecordComesFromEachAddress()
    {
        QFETCH(QStringList, down);
        QFETCH(QString, from);
        Program program(false);
        program.backend.down = down;
        const MainWindow &window = program.start();
        QStringList all;
        for (const QString &address : list({"main ", "bk1 ", "bk2 "})) {
            all.append(address + readProduct);
        }
        const QStringList asked = program.backend.askedLike(QStringLiteral("productrecord"));
        QCOMPARE(asked, from.isEmpty() ? all : all.mid(0, down.size() + 1));
        QCOMPARE(window.NoDeviceMode, !from.isEmpty()); // the program may be used without a receiver
        QCOMPARE(window.DongleID, from.isEmpty() ? QString() : QStringLiteral("02-01--1"));
        QCOMPARE(window.BackendReachable.load(), down.isEmpty());
    }

    void theDeviceRecordComesFromEachAddress_data() { theProductRecordComesFromEachAddress_data(); }

    void theDeviceRecordComesFromEachAddress()
    {
        QFETCH(QStringList, down);
        QFETCH(QString, from);
        Program program;
        MainWindow &window = program.startWith(QStringLiteral("B"));
        program.backend.down = down;
        window.ReadServerInfo();
        QStringList all;
        for (const QString &address : list({"main ", "bk1 ", "bk2 "})) {
            all.append(address + readRecord);
        }
        QCOMPARE(program.backend.asked, from.isEmpty() ? all : all.mid(0, down.size() + 1));
        QCOMPARE(window.recorder()->UseTXASRApi, !from.isEmpty());
        QCOMPARE(window.IPRecord == QLatin1String("192.0.2.9"), !from.isEmpty());
        QVERIFY(window.BackendReachable);
        program.backend.asked.clear();
        window.DeviceConnected = window.NoDeviceMode = false;
        window.ReadServerInfo();
        window.DeviceConnected = true;
        window.BackendReachable = false;
        window.ReadServerInfo();
        QVERIFY(program.backend.asked.isEmpty());
    }

    void offlineNothingIsAsked()
    {
        Program program;
        program.fake.networkState->kind = mevo::NetworkState::Connection::None;
        program.start();
        QCOMPARE(program.backend.server.connections, 0);
    }

    void whatAnExitWrites_data()
    {
        QTest::addColumn<QString>("engines");
        QTest::addColumn<QByteArray>("exit");
        QTest::addColumn<QStringList>("counters");
        const QByteArray asked("on_exitAppAction");
        const QByteArray restart("RebootAppDelayTimeout");
        const QByteArray byItself("exitByItself");
        const QStringList baidu = list({"BDSR1DUsedQuantity=3", "BDSR1DUsedQuantity=3 flush"});
        const QStringList xunFei = list({"XFSR1DUsedQuantity=5", "XFSR1DUsedQuantity=5 flush"});
        const QStringList tencent = list({"TXSR1DUsedQuantity=4 flush"});
        QTest::newRow("asked, Baidu") << "B" << asked << baidu;
        QTest::newRow("asked, XunFei") << "X" << asked << xunFei;
        QTest::newRow("asked, Tencent") << "T" << asked << tencent;
        QTest::newRow("asked, none") << "" << asked << QStringList();
        QTest::newRow("asked, Baidu and XunFei") << "BX" << asked << baidu + xunFei;
        QTest::newRow("restart, Baidu") << "B" << restart << baidu;
        QTest::newRow("restart, Tencent") << "T" << restart << tencent;
        QTest::newRow("by itself, Baidu") << "B" << byItself << baidu;
        QTest::newRow("by itself, Tencent") << "T" << byItself << list({"TXSR1DUsedQuantity=4"}) + tencent;
    }

    void whatAnExitWrites()
    {
        QFETCH(QString, engines);
        QFETCH(QByteArray, exit);
        Program program;
        MainWindow &window = program.startWith(engines);
        QVERIFY(QMetaObject::invokeMethod(&window, exit.constData()));
        QTEST(program.backend.counters(), "counters");
        // All of them have arrived before the microphone is switched off.
        const QStringList calls = program.fake.log.calls();
        QVERIFY(calls.contains(latchOff));
        for (int i = calls.indexOf(latchOff); i < calls.size(); ++i) {
            QVERIFY2(!calls[i].startsWith(QLatin1String("asked")), qPrintable(calls[i]));
        }
    }

    void whatHoldsTheCountersBack_data()
    {
        QTest::addColumn<bool>("reachable");
        QTest::addColumn<bool>("locked");
        QTest::addColumn<bool>("pressing");
        QTest::newRow("no backend") << false << false << false;
        QTest::newRow("locked") << true << true << false;
        QTest::newRow("a press is being handled") << true << false << true;
    }

    void whatHoldsTheCountersBack()
    {
        QFETCH(bool, reachable);
        QFETCH(bool, locked);
        QFETCH(bool, pressing);
        Program program;
        MainWindow &window = program.startWith(QStringLiteral("B"));
        window.BackendReachable = reachable;
        window.CountersLocked = locked;
        window.KeyDownHeld = pressing;
        window.updateRecCountsTimerOut();
        window.BackendReachable = true;
        window.CountersLocked = window.KeyDownHeld = false;
        window.BDSR1DUsedQuantity = 7;
        window.updateRecCountsTimerOut();
        QTRY_COMPARE(program.backend.counters(), list({"BDSR1DUsedQuantity=7 flush"}));
    }

    void theCountersAreWritten_data()
    {
        QTest::addColumn<bool>("plugged");
        QTest::addColumn<bool>("connected");
        QTest::newRow("with a receiver") << true << true;
        QTest::newRow("without a receiver") << false << true;
        QTest::newRow("after its removal") << false << false;
    }

    void theCountersAreWritten()
    {
        QFETCH(bool, plugged);
        QFETCH(bool, connected);
        Program program(plugged);
        MainWindow &window = program.startWith(QStringLiteral("B"));
        window.DeviceConnected = connected;
        window.ClickCanASR = true;
        window.micTip()->show();
        const std::function<void()> ends[] = {
            [&] { window.onEnterTimerAfterRec(); },
            [&] { window.showRecText(QStringLiteral("__AutoOver__")); },
            [&] {
                QTest::mousePress(window.micTip(), Qt::RightButton);
                window.BDSR1DUsedQuantity = 3; // what the empty session may have added
                program.backend.asked.clear();
                QTest::mousePress(window.micTip(), Qt::RightButton);
            },
        };
        for (const auto &end : ends) {
            window.BDSR1DUsedQuantity = 3;
            program.backend.asked.clear();
            program.fake.log.clear();
            end();
            if (connected) {
                QTRY_COMPARE(program.backend.counters().value(0),
                             QStringLiteral("BDSR1DUsedQuantity=3 flush"));
            }
            QCOMPARE(program.fake.log.has(latchOff), plugged);
        }
        if (!connected) {
            window.updateRecCountsTimerOut(); // the one that is asked for shows that no other came before it
            QTRY_COMPARE(program.backend.counters().size(), 1);
        }
    }

    void theMenuFlushesBeforeItClosesVoiceInput()
    {
        Program program;
        MainWindow &window = program.startWith(QStringLiteral("T"));
        window.on_closeASRFuncAction();
        QVERIFY(window.ASRFuncClosed && program.fake.log.has(latchOff));
        QTRY_COMPARE(program.backend.counters(), list({"TXSR1DUsedQuantity=4 flush"}));
    }

    void aBaiduRowTakesItsAccountFirst()
    {
        Program program;
        MainWindow &window = program.startWith(QStringLiteral("T"));
        window.BuildAsrLanMenu(false, false);
        program.backend.holdToken = true;
        QString codeAtTheToken;
        program.backend.server.onRequest = [&](const ScriptedRequest &request) {
            if (request.target.startsWith("/oauth")) {
                codeAtTheToken = Program::setting("BaiDuCurrentVoiceType") + window.BaiDuCurrentVoiceType;
                QTimer::singleShot(0, &window, [&] { program.backend.server.answerHeld(); });
            }
        };
        program.choose(QStringLiteral("粤语(百度版)"));
        QCOMPARE(program.backend.askedLike(QStringLiteral("token")), list({"token yby"}));
        QCOMPARE(codeAtTheToken, QStringLiteral("15371537"));
        QCOMPARE(Program::setting("BaiDuCurrentVoiceType"), QStringLiteral("1637"));
        QVERIFY(window.recorder()->BaiDuNoStreamApi && !window.recorder()->UseTXASRApi);
        QVERIFY(program.backend.asked.last().contains(QLatin1String("UseBDAPIPara ='1'")));
        program.backend.asked.clear();
        program.choose(QStringLiteral("粤语(百度版)")); // in force already
        QVERIFY(program.backend.askedLike(QStringLiteral("token")).isEmpty());
    }

    void whatComesWhileTheAccountIsFetchedHolds_data()
    {
        QTest::addColumn<bool>("exit");
        QTest::newRow("another row") << false;
        QTest::newRow("an exit") << true;
    }

    void whatComesWhileTheAccountIsFetchedHolds()
    {
        QFETCH(bool, exit);
        Program program;
        MainWindow &window = program.startWith(QStringLiteral("T"));
        window.BuildAsrLanMenu(false, false);
        program.backend.holdToken = true;
        program.backend.server.onRequest = [&](const ScriptedRequest &request) {
            if (request.target.startsWith("/oauth")) {
                QTimer::singleShot(0, &window, [&, exit] {
                    exit ? window.exitByItself() : program.choose(QStringLiteral("英语(讯飞版)"));
                    program.backend.server.answerHeld();
                });
            }
        };
        program.choose(QStringLiteral("粤语(百度版)"));
        QCOMPARE(Program::setting("BaiDuCurrentVoiceType"),
                 exit ? QStringLiteral("1637") : QStringLiteral("1537"));
        if (exit) {
            QVERIFY(window.recorder() == nullptr);
        } else {
            QVERIFY(window.recorder()->UseXunFeiWebApi && !window.recorder()->BaiDuNoStreamApi);
            QCOMPARE(Program::setting("XunFeiWebApiCurrentVoiceType"), QStringLiteral("en_us"));
        }
    }

    void rowsOfInputMethodsSayThatTheyAreMissing_data()
    {
        QTest::addColumn<QString>("row");
        QTest::newRow("XunFei") << QStringLiteral("使用讯飞语音输入法");
        QTest::newRow("Sogou") << QStringLiteral("使用搜狗语音输入法");
        QTest::newRow("custom") << QStringLiteral("使用自定义语音输入法");
    }

    void rowsOfInputMethodsSayThatTheyAreMissing()
    {
        QFETCH(QString, row);
        Program program;
        MainWindow &window = program.startWith(QStringLiteral("B"));
        window.LocalASR3CustomInstallPath = QStringLiteral("/opt/SpeechInput.exe");
        window.BaiduQuotaHit = true;
        window.BuildAsrLanMenu(false, false);
        const QByteArray before = home.read(QStringLiteral("MEVOSetting.ini"));
        program.choose(row);
        QVERIFY(program.fake.log.has(QStringLiteral(
            "message 本版本尚不支持第三方语音输入法，请在语言菜单中选择其他语音引擎！ (3000)")));
        QCOMPARE(home.read(QStringLiteral("MEVOSetting.ini")), before);
        QVERIFY(window.recorder()->BaiDuNoStreamApi && !window.recorder()->UseTXASRApi);
        QVERIFY(!window.LocalEnableASR3 && window.BaiduQuotaHit);
        QVERIFY(program.backend.asked.isEmpty());
        for (const QAction *action : window.languageMenu()->actions()) {
            QVERIFY(action->text() != row || !action->isChecked());
        }
        window.pushButton_Mic_clicked();
        QVERIFY(window.micTip()->isVisible());
    }

    void anInputMethodOfTheSettingsLeavesTheMicrophoneButton()
    {
        Program program(true, "LocalEnableASR3=1\nLocalUseASR3Index=2\n");
        MainWindow &window = program.start();
        QVERIFY(!window.LocalEnableASR3);
        QCOMPARE(program.fake.log.calls(QStringLiteral("message 本版本尚不支持第三方语音输入法")).size(), 1);
        QCOMPARE(Program::setting("LocalEnableASR3"), QStringLiteral("1")); // kept for a build that has it
        window.pushButton_Mic_clicked();
        QVERIFY(window.micTip()->isVisible());
    }

    void noEngineIsToldWithAnEmptyStatement()
    {
        Program program;
        MainWindow &window = program.startWith(QString());
        window.BuildAsrLanMenu(true, false);
        QCOMPARE(program.backend.asked, list({"main "}));
    }

    void theFirstArrivalSettlesTheEngine_data()
    {
        QTest::addColumn<bool>("first");
        QTest::addColumn<bool>("inputMethod"); // the record would use one
        QTest::addColumn<bool>("fast");
        QTest::addColumn<bool>("settles");
        QTest::addColumn<bool>("told");
        QTest::newRow("first") << true << true << false << true << true;
        QTest::newRow("fast variant") << true << true << true << true << false;
        QTest::newRow("not the first") << false << true << false << false << false;
        QTest::newRow("no input method") << true << false << false << false << false;
    }

    void theFirstArrivalSettlesTheEngine()
    {
        QFETCH(bool, first);
        QFETCH(bool, inputMethod);
        QFETCH(bool, fast);
        QFETCH(bool, settles);
        Program program;
        MainWindow &window = program.startWith(QStringLiteral("T"));
        using Change = mevo::DeviceNotifier::Change;
        program.fake.deviceNotifier->report(Change::Removal);
        QTRY_VERIFY(!window.DeviceConnected);
        window.FirstRunApp = first;
        window.EnableASR3 = inputMethod;
        window.BaiDuNoStreamApi_FastVersion = fast;
        program.backend.asked.clear();
        program.fake.log.clear();
        program.fake.deviceNotifier->report(Change::Arrival);
        const QString lastStep = QStringLiteral("sibling \\KeypadHost.exe ORVKBAppHide");
        QTRY_VERIFY(program.fake.log.has(lastStep));
        QCOMPARE(window.recorder()->BaiDuNoStreamApi, settles);
        QCOMPARE(window.FirstRunApp, first && !settles);
        QCOMPARE(Program::setting("LocalUseASR3Index"), settles ? QStringLiteral("-1") : QString());
        const QStringList told = program.backend.askedLike(QStringLiteral("UseBDFstPara"));
        QTEST(!told.isEmpty(), "told");
        if (!told.isEmpty()) {
            QCOMPARE(told,
                     list({"main update mevodb.device_serialid set DefaultRecEngine=10, UseBDAPIPara ='1', "
                           "UseXFSDKPara = '0', UseXFWAPIPara='0' , EnableASR3='0', "
                           "UseASR3Index='-1',UseBDFstPara = '0' where DongleID='02-01-001357'"}));
        }
    }
};

QTEST_MAIN(TestServiceHands)
#include "tst_service_hands.moc"
