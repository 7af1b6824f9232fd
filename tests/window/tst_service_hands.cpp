#include "audio/AudioRecorder.h"
#include "base/SettingsFile.h"
#include "service/WebCipher.h"
#include "session/KeyReport.h"
#include "support/FakePlatform.h"
#include "support/Rows.h"
#include "support/ScratchHome.h"
#include "support/ScriptedHttp.h"
#include "ui/Ask.h"
#include "ui/CADShowDlg.h"
#include "ui/MicTipDialog.h"
#include "window/MainWindow.h"

#include <QAbstractButton>
#include <QAction>
#include <QDesktopServices>
#include <QElapsedTimer>
#include <QJsonDocument>
#include <QJsonObject>
#include <QMenu>
#include <QPushButton>
#include <QScopedValueRollback>
#include <QtTest>

#include <functional>
#include <utility>

namespace {

const ScratchHome home;
const WebCipher cipher;

QJsonObject oneRow(const QJsonObject &row)
{
    return {{"items"_s, 1}, {"result0"_s, row}};
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
    QJsonObject product{{"ClickCanASR"_s, "1"_s}, {"VoiceIntervalTime"_s, "700"_s}};
    QJsonObject record{{"UseTXAPIPara"_s, "1"_s}, {"IPRecord"_s, "192.0.2.9"_s}};
    QJsonValue recordCount{1}; ///< rows of the device record that are announced
    QByteArray recordReply;    ///< sent in the place of the device record, if any
    QString refused;           ///< statements with this in them are answered with an error
    QStringList asked;
    int delayMs = 0;        ///< before an answer is sent
    bool holdToken = false; ///< tokens wait for server.answerHeld()

    QStringList askedLike(const QString &part) const { return asked.filter(part); }
    /// The counters among what was asked, without address and time: "BDSR1DUsedQuantity=3 flush" for one that
    /// tells the time of use as well.
    QStringList counters() const
    {
        static const QRegularExpression expression(
            "^main update mevodb\\.device_serialid set (\\w+UsedQuantity=\\d+)"
            "(,LatestLoginTime='2026-11-24 09:00:\\d\\d',CurrentVersion=107,CurrentSubVer='.+')? "
            "where DongleID='(.+)'$"_s);
        QStringList found;
        for (const QString &each : askedLike("UsedQuantity="_s)) {
            const QRegularExpressionMatch match = expression.match(each);
            found.append(match.hasMatch()
                             ? match.captured(1) + (match.captured(2).isEmpty() ? QString() : " flush"_s)
                             : "? "_s + each);
        }
        found.sort(); // those of one moment go over connections of their own
        return found;
    }

private:
    ScriptedAnswer answer(const ScriptedRequest &request)
    {
        if (request.target.startsWith("/oauth")) {
            static const QRegularExpression client("client_id=([^&]*)"_s);
            asked.append("token "_s + client.match(QString::fromLatin1(request.body)).captured(1));
            const ScriptedAnswer token = ScriptedAnswer::body(R"({"access_token":"24.fresh"})");
            return holdToken ? ScriptedAnswer::late(token) : delayed(token);
        }
        const QByteArray address = request.target.mid(1, request.target.indexOf('?') - 1);
        const QByteArray rest = request.target.mid(request.target.indexOf("___") + 3);
        const QString statement = cipher.DecryptString(QString::fromLatin1(rest.right(rest.size() & ~31)));
        asked.append(QString::fromLatin1(address) + QLatin1Char(' ') + statement);
        m_log.add("asked "_s + statement);
        if (down.contains(QString::fromLatin1(address)) ||
            (!refused.isEmpty() && statement.contains(refused))) {
            return ScriptedAnswer::body({}, 503);
        }
        QJsonObject reply{{"items"_s, 1}, {"result"_s, "107"_s}};
        if (statement.contains(QLatin1String("productrecord"))) {
            reply = oneRow(product);
        } else if (statement.startsWith(QLatin1String("select *"))) {
            if (!recordReply.isEmpty()) {
                return ScriptedAnswer::body(recordReply);
            }
            reply = oneRow(record);
            reply.insert("items"_s, recordCount);
        } else if (statement.startsWith(QLatin1String("select F0"))) {
            QJsonObject account;
            const QString name = statement.section(u' ', -3, -3); // a Baidu list's column
            for (int i = 0; i < 3; ++i) {
                account.insert("F%1"_s.arg(i), mevo::encipherField(cipher, name));
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

/// Pages that the desktop was asked to open.
class Pages : public QObject
{
    Q_OBJECT

public:
    QStringList opened;
public Q_SLOTS:
    void open(const QUrl &url) { opened.append(url.toString()); }
};

/// The program with a receiver, or without, and a backend.
struct Program
{
    FakePlatform fake;
    Backend backend{fake.log};
    std::unique_ptr<MainWindow> window;
    QList<mevo::Question> questions;  ///< that the user was asked
    int answer = 2;                   ///< the button that is pressed
    std::function<void()> onQuestion; ///< runs while a question stands
    Pages pages;

    explicit Program(bool plugged = true, const QByteArray &settings = {})
    {
        for (const char *file : {"besrfdssset.ini", "besrfdsssetFYSL.ini", "bjsdsrbdssset.ini",
                                 "bbzdsrbdssset.ini", "byydsrbdssset.ini", "bendsrbdssset.ini",
                                 "bschdsrbdssset.ini", "bdsrbdsssettts.ini", "bdsrbdsssetfy.ini"}) {
            home.remove(QLatin1String(file));
        }
        const QByteArray host = backend.server.host().toLatin1();
        home.write("MEVOEndpoints.ini"_s,
                   "[Endpoints]\nBackendUrl=\"http://" + host + "/main?\"\nBackendUrlBk1=\"http://" + host +
                       "/bk1?\"\nBackendUrlBk2=\"http://" + host +
                       "/bk2?\"\nBaiduSpeechHost=127.0.0.1:9\nTranslateHost=127.0.0.1:9\nBaiduTokenHost=" +
                       host + "\n");
        home.write("MEVOSetting.ini"_s,
                   "[MainSetting]\nBaiDuNoStreamApi=1\nUseTXASRApi=0\nBaiDuCurrentVoiceType=1537\n" +
                       settings);
        if (plugged) {
            fake.hid->entries = FakeHid::receiver();
            fake.hid->identityReply = QByteArray::fromHex("010c5713000100020000000000000000");
        }
        mevo::askHook = [this](const mevo::Question &question) {
            questions.append(question);
            if (onQuestion) {
                std::exchange(onQuestion, nullptr)();
            }
            return answer;
        };
        for (const char *scheme : {"http", "https", "file"}) {
            QDesktopServices::setUrlHandler(QLatin1String(scheme), &pages, "open");
        }
    }
    ~Program()
    {
        window.reset();
        mevo::askHook = nullptr;
        for (const char *scheme : {"http", "https", "file"}) {
            QDesktopServices::unsetUrlHandler(QLatin1String(scheme));
        }
        // An exit has told the application to quit; a pass of its loop lets the next program wait again.
        QTimer::singleShot(0, qApp, &QCoreApplication::quit);
        QCoreApplication::exec();
    }
    MainWindow &start()
    {
        window = std::make_unique<MainWindow>(fake.platform);
        return *window;
    }
    /// Something happens as soon as the backend has been asked anything.
    void whenAsked(std::function<void()> action)
    {
        backend.server.onRequest = [this, action = std::move(action)](const ScriptedRequest &) {
            backend.server.onRequest = nullptr;
            QTimer::singleShot(0, window.get(), action);
        };
    }
    /// Something happens before the backend's next answer comes.
    void beforeTheAnswer(const std::function<void()> &action)
    {
        backend.delayMs = 3600000; // until somebody lets it go
        whenAsked([this, action] {
            backend.delayMs = 0;
            action();
            backend.server.answerHeld();
        });
    }
    /// Starts, sets the engine flags told ("B", "T", "X") and forgets what was asked so far.
    MainWindow &startWith(const QString &engines)
    {
        start();
        AudioRecorder &recorder = *window->recorder();
        recorder.BaiDuNoStreamApi = engines.contains(u'B');
        recorder.UseTXASRApi = engines.contains(u'T');
        recorder.UseXunFeiWebApi = engines.contains(u'X');
        window->BDSR1DUsedQuantity = window->BDSR1DReadQuantity = 3;
        window->TXSR1DUsedQuantity = window->TXSR1DReadQuantity = 4;
        window->XFSR1DUsedQuantity = window->XFSR1DReadQuantity = 5;
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
        QFAIL(qPrintable("no row "_s + row));
    }
    static QString setting(const char *key)
    {
        return mevo::SettingsFile().value(QLatin1String(key)).toString();
    }
};

const QString latchOff = "hid send 05 20 08 00 00 00 00 00"_s;
const QString readProduct = "select * from mevodb.productrecord where CustomIndex=2 and ProductionIndex=1"_s;
const QString readRecord = "select * from mevodb.device_serialid where DongleID='02-01-001357'"_s;

} // namespace

class TestServiceHands : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        MainWindow::startWaitMs = 30000; // a loaded machine is no slow service
    }

    void aStartAsksInItsOrder()
    {
        Program program;
        const MainWindow &window = program.start();
        QStringList asked = program.backend.asked;
        QVERIFY2(asked.size() == 15, qPrintable(asked.join(u'\n')));
        QCOMPARE(asked.takeFirst(), "main newGetNewVer"_s);
        QCOMPARE(asked.takeFirst(), "main "_s + readProduct);
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
        QCOMPARE(asked.takeFirst(), "token zbb"_s);
        QVERIFY(asked.takeFirst().startsWith(QLatin1String("token ")));
        QCOMPARE(asked.takeFirst(), "main "_s + readRecord);
        const QRegularExpression address(
            "^main update mevodb\\.device_serialid set IPRecord='[0-9a-f.:]+' where "
            "DongleID='02-01-001357'$"_s);
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
        QTRY_COMPARE_WITH_TIMEOUT(window.BaiduAccessToken, "24.fresh"_s, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(window.recorder()->UseTXASRApi, 10000);
        QTRY_VERIFY_WITH_TIMEOUT(!program.backend.askedLike("IPRecord"_s).isEmpty(), 10000);
        QVERIFY(!home.read("bbzdsrbdssset.ini"_s).isEmpty());
    }

    /// The engine of a first run is told to a backend that was too slow for the start, before the record that
    /// it keeps can undo it.
    void theEngineOfAFirstRunIsToldToASlowBackend()
    {
        const QScopedValueRollback<int> wait(MainWindow::startWaitMs, 100);
        Program program(true, "FirstRunApp=1\n");
        program.backend.delayMs = 250;
        program.backend.record = {{"UseBDAPIPara"_s, "1"_s}, {"IPRecord"_s, "192.0.2.9"_s}};
        const MainWindow &window = program.start();
        QVERIFY(window.recorder()->UseTXASRApi && !window.BackendReachable);
        const QString told = "UseTXAPIPara= '1'"_s;
        QTRY_VERIFY_WITH_TIMEOUT(!program.backend.askedLike(readRecord).isEmpty(), 20000);
        const QString choice = program.backend.askedLike(told).value(0);
        QVERIFY2(!choice.isEmpty(), qPrintable(program.backend.asked.join(u'\n')));
        QVERIFY(program.backend.asked.indexOf(choice) <
                program.backend.asked.indexOf("main "_s + readRecord));
    }

    void aChoiceDuringTheReadingOfTheRecordHolds()
    {
        Program program;
        MainWindow &window = program.startWith("B"_s);
        program.whenAsked([&] { program.choose("英语(讯飞版)"_s); });
        program.backend.delayMs = 100;
        program.backend.record["UseXFWPIDWAPara"_s] = "1"_s;
        program.backend.record["ShowXFDialect"_s] = QString::number(1 - window.ShowXFDialect);
        window.recorder()->EnableXunFeiWebApiDwa = false;
        window.ReadServerInfo(); // the row says Tencent
        QVERIFY(window.recorder()->UseXunFeiWebApi && !window.recorder()->UseTXASRApi);
        QCOMPARE(Program::setting("XunFeiWebApiCurrentVoiceType"), "en_us"_s);
        QVERIFY(window.recorder()->EnableXunFeiWebApiDwa); // what he has not chosen is the record's
    }

    /// Two readings at a time: the answer of the older one comes last, and is dropped.
    void anOlderAnswerDoesNotUndoANewerOne()
    {
        Program program;
        MainWindow &window = program.startWith("B"_s);
        program.backend.record = {{"UseTXAPIPara"_s, 1}, {"ShowTXI"_s, 0}};
        program.beforeTheAnswer([&] {
            program.backend.record = {{"UseXFWAPIPara"_s, 1}};
            window.ReadServerInfo();
        });
        window.ReadServerInfo();
        QCOMPARE(program.backend.askedLike(readRecord).size(), 2);
        QVERIFY(window.recorder()->UseXunFeiWebApi && !window.recorder()->UseTXASRApi && window.ShowTXI);
    }

    /// A language that was chosen while the backend was away is told before the record is read, and the
    /// record does not undo it before it has heard of it. The mark stands in the settings, for the next
    /// start.
    void aChoiceThatTheBackendHasNotHeardHolds()
    {
        Program program;
        MainWindow &window = program.startWith("T"_s);
        window.IsOnline = false;
        program.choose("英语(讯飞版)"_s);
        QVERIFY(window.recorder()->UseXunFeiWebApi);
        QCOMPARE(Program::setting("EngineChoiceUntold"), "1"_s);
        window.IsOnline = true;
        program.backend.refused = "DefaultRecEngine"_s;
        window.ReadServerInfo(); // the row still says Tencent
        QVERIFY(window.recorder()->UseXunFeiWebApi && !window.recorder()->UseTXASRApi);
        program.backend.refused.clear();
        program.backend.record["UseTXAPIPara"_s] = "0"_s;
        program.backend.asked.clear();
        window.ReadServerInfo();
        QVERIFY(program.backend.asked.first().contains(QLatin1String("UseXFSDKPara = '1'")));
        QVERIFY(window.recorder()->UseXunFeiWebApi);
        QCOMPARE(Program::setting("EngineChoiceUntold"), "0"_s);
    }

    /// The settings page has changed what the record holds as well, while the backend could not be told.
    void theRecordDoesNotUndoAChoiceOfTheSettings()
    {
        Program program;
        MainWindow &window = program.startWith("T"_s);
        program.backend.record["ForceUseASR3"_s] = "0"_s;
        program.backend.refused = "ForceUseASR3="_s;
        window.ForceUseASR3 = false;
        window.LocalEnableASR3 = true; // so that the box can be used
        window.pushBuutton_Setting_clicked();
        window.findChild<QAbstractButton *>("checkBox_ForceUseASR3"_s)->click();
        QTRY_VERIFY(!program.backend.askedLike("set ForceUseASR3=1"_s).isEmpty());
        window.ReadServerInfo();
        QVERIFY(window.ForceUseASR3);
        QCOMPARE(Program::setting("RecordChoicesUntold"), "ForceUseASR3=1"_s);
        program.backend.refused.clear();
        program.backend.asked.clear();
        window.ReadServerInfo();
        QCOMPARE(program.backend.asked.first(),
                 "main update mevodb.device_serialid set ForceUseASR3=1 where DongleID='%1'"_s.arg(
                     window.DongleID));
        QCOMPARE(Program::setting("RecordChoicesUntold"), QString());
        window.ReadServerInfo(); // what it says now it says knowing of the choice
        QVERIFY(!window.ForceUseASR3);
    }

    /// A choice that is made and told while a reading waits: what that reading brings is older, also when
    /// another one has been begun meanwhile and got no answer.
    void aReadingThatWasSentBeforeAChoiceDoesNotUndoIt()
    {
        Program program;
        MainWindow &window = program.startWith("T"_s);
        window.ForceUseASR3 = false;
        window.LocalEnableASR3 = true; // so that the box can be used
        window.pushBuutton_Setting_clicked();
        program.backend.record = {{"ForceUseASR3"_s, "0"_s}};
        program.beforeTheAnswer([&] {
            window.findChild<QAbstractButton *>("checkBox_ForceUseASR3"_s)->click();
            QTRY_VERIFY(!program.backend.askedLike("set ForceUseASR3=1"_s).isEmpty());
            QTRY_COMPARE(Program::setting("RecordChoicesUntold"), QString());
            program.backend.refused = "select *"_s;
            window.ReadServerInfo();
        });
        window.ReadServerInfo();
        QVERIFY(window.ForceUseASR3);
        program.backend.refused.clear();
        window.ReadServerInfo();
        QVERIFY(!window.ForceUseASR3); // what is read now knows of the choice
    }

    /// The statement of one choice waits while the next one is made: they reach the record one after another,
    /// and the second, which fails, is told again.
    void aChoiceWhileTheOneBeforeIsBeingToldIsNotLost()
    {
        Program program;
        MainWindow &window = program.startWith("B"_s);
        window.BuildAsrLanMenu(false, false);
        program.beforeTheAnswer([&] {
            program.choose("英语(讯飞版)"_s);
            QCOMPARE(program.backend.asked.size(), 1);
            QCOMPARE(Program::setting("EngineChoiceUntold"), "1"_s);
            program.backend.refused = "UseXFSDKPara = '1'"_s;
        });
        program.choose("普通话(腾讯版)"_s);
        const QString second = "UseXFSDKPara = '1'"_s;
        QVERIFY(window.recorder()->UseXunFeiWebApi);
        QCOMPARE(program.backend.askedLike(second).size(), 1);
        QCOMPARE(Program::setting("EngineChoiceUntold"), "1"_s);
        program.backend.refused.clear();
        window.ReadServerInfo(); // the row says Tencent
        QCOMPARE(program.backend.askedLike(second).size(), 2);
        QCOMPARE(Program::setting("EngineChoiceUntold"), "0"_s);
    }

    /// A record that is not there yet cannot hold what it is told, though the backend answers: the choices
    /// are told the one that is made.
    void choicesAreToldARecordThatHasJustBeenMade_data()
    {
        QTest::addColumn<QString>("when");
        QTest::newRow("while the backend was away") << "offline";
        QTest::newRow("and it has answered") << "before";
        QTest::newRow("while the record was asked for") << "during";
    }
    void choicesAreToldARecordThatHasJustBeenMade()
    {
        QFETCH(QString, when);
        Program program;
        program.backend.refused = "select * from mevodb.device_serialid"_s; // it is read late
        MainWindow &window = program.startWith("T"_s);
        program.backend.refused.clear();
        program.backend.recordCount = 0;
        window.BackendReachable = true;
        window.LocalEnableASR3 = window.ForceUseASR3 = true;
        window.EnableASR3 = when != QLatin1String("offline");
        window.pushBuutton_Setting_clicked();
        const auto choose = [&] {
            window.findChild<QAbstractButton *>("checkBox_ForceUseASR3"_s)->click();
            program.choose("英语(讯飞版)"_s);
        };
        if (when == QLatin1String("during")) {
            mevo::SettingsFile().setValue("RecordChoicesUntold"_s, "EnableASR3=1"_s);
            program.backend.delayMs = 100;
            program.backend.server.onRequest = [&](const ScriptedRequest &) {
                if (!program.backend.askedLike(readRecord).isEmpty()) {
                    program.backend.server.onRequest = nullptr;
                    QTimer::singleShot(0, &window, choose);
                }
            };
        } else {
            window.IsOnline = when == QLatin1String("before");
            choose();
            QTRY_VERIFY(window.recorder()->UseXunFeiWebApi);
            QTRY_VERIFY(Program::setting("RecordChoicesUntold").contains("ForceUseASR3=0"_s));
            window.IsOnline = true;
        }
        window.ReadServerInfo();
        QVERIFY(!window.ForceUseASR3 && window.recorder()->UseXunFeiWebApi);
        QVERIFY(!window.EnableASR3 && !window.LocalEnableASR3);
        const auto toldAfterwards = [&program](const QString &part) {
            const QStringList told = program.backend.askedLike(part);
            const QStringList inserts = program.backend.askedLike("insert into"_s);
            return !told.isEmpty() && inserts.size() == 1 &&
                   program.backend.asked.lastIndexOf(told.last()) > program.backend.asked.indexOf(inserts[0]);
        };
        QTRY_VERIFY(toldAfterwards("ForceUseASR3=0"_s));
        QTRY_VERIFY(toldAfterwards("UseXFSDKPara = '1'"_s));
        QTRY_COMPARE(Program::setting("RecordChoicesUntold") + Program::setting("EngineChoiceUntold"), "0"_s);
    }

    void theProductRecordComesFromEachAddress_data()
    {
        const Rows<QStringList, QString> row; // down, from
        row("main", QStringList(), "main");
        row("first backup", list({"main"}), "bk1");
        row("second backup", list({"main", "bk1"}), "bk2");
        row("none", list({"main", "bk1", "bk2"}), QString());
    }

    void theProductRecordComesFromEachAddress()
    {
        const auto [down, from] = rowOf<QStringList, QString>();
        Program program(false);
        program.backend.down = down;
        const MainWindow &window = program.start();
        QStringList all;
        for (const QString &address : list({"main ", "bk1 ", "bk2 "})) {
            all.append(address + readProduct);
        }
        const QStringList asked = program.backend.askedLike("productrecord"_s);
        QCOMPARE(asked, from.isEmpty() ? all : all.mid(0, down.size() + 1));
        QCOMPARE(window.NoDeviceMode, !from.isEmpty()); // the program may be used without a receiver
        QCOMPARE(window.DongleID, from.isEmpty() ? QString() : "02-01--1"_s);
        QCOMPARE(window.BackendReachable.load(), down.isEmpty());
    }

    void theDeviceRecordComesFromEachAddress_data() { theProductRecordComesFromEachAddress_data(); }

    void theDeviceRecordComesFromEachAddress()
    {
        const auto [down, from] = rowOf<QStringList, QString>();
        Program program;
        MainWindow &window = program.startWith("B"_s);
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
        const Rows<QString, QByteArray, QStringList> row; // engines, exit, counters
        const QByteArray asked("on_exitAppAction");
        const QByteArray restart("RebootAppDelayTimeout");
        const QByteArray byItself("exitByItself");
        const QStringList baidu = list({"BDSR1DUsedQuantity=3", "BDSR1DUsedQuantity=3 flush"});
        const QStringList xunFei = list({"XFSR1DUsedQuantity=5", "XFSR1DUsedQuantity=5 flush"});
        const QStringList tencent = list({"TXSR1DUsedQuantity=4 flush"});
        row("asked, Baidu", "B", asked, baidu);
        row("asked, XunFei", "X", asked, xunFei);
        row("asked, Tencent", "T", asked, tencent);
        row("asked, none", "", asked, QStringList());
        row("asked, Baidu and XunFei", "BX", asked, baidu + xunFei);
        row("restart, Baidu", "B", restart, baidu);
        row("restart, Tencent", "T", restart, tencent);
        row("by itself, Baidu", "B", byItself, baidu);
        row("by itself, Tencent", "T", byItself, list({"TXSR1DUsedQuantity=4"}) + tencent);
    }

    void whatAnExitWrites()
    {
        const auto [engines, exit, counters] = rowOf<QString, QByteArray, QStringList>();
        Program program;
        MainWindow &window = program.startWith(engines);
        QVERIFY(QMetaObject::invokeMethod(&window, exit.constData()));
        QCOMPARE(program.backend.counters(), counters);
        // All of them have arrived before the microphone is switched off.
        const QStringList calls = program.fake.log.calls();
        QVERIFY(calls.contains(latchOff));
        for (int i = calls.indexOf(latchOff); i < calls.size(); ++i) {
            QVERIFY2(!calls[i].startsWith(QLatin1String("asked")), qPrintable(calls[i]));
        }
    }

    void whatHoldsTheCountersBack_data()
    {
        const Rows<bool, bool, bool> row; // reachable, locked, pressing
        row("no backend", false, false, false);
        row("locked", true, true, false);
        row("a press is being handled", true, false, true);
    }

    void whatHoldsTheCountersBack()
    {
        const auto [reachable, locked, pressing] = rowOf<bool, bool, bool>();
        Program program;
        MainWindow &window = program.startWith("B"_s);
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
        const Rows<bool, bool> row; // plugged, connected
        row("with a receiver", true, true);
        row("without a receiver", false, true);
        row("after its removal", false, false);
    }

    void theCountersAreWritten()
    {
        const auto [plugged, connected] = rowOf<bool, bool>();
        Program program(plugged);
        MainWindow &window = program.startWith("B"_s);
        window.DeviceConnected = connected;
        window.ClickCanASR = true;
        window.micTip()->show();
        const std::function<void()> ends[] = {
            [&] { window.onEnterTimerAfterRec(); },
            [&] { window.showRecText("__AutoOver__"_s); },
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
                QTRY_COMPARE(program.backend.counters().value(0), "BDSR1DUsedQuantity=3 flush"_s);
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
        MainWindow &window = program.startWith("T"_s);
        window.on_closeASRFuncAction();
        QVERIFY(window.ASRFuncClosed && program.fake.log.has(latchOff));
        QTRY_COMPARE(program.backend.counters(), list({"TXSR1DUsedQuantity=4 flush"}));
    }

    void aBaiduRowTakesItsAccountFirst()
    {
        Program program;
        MainWindow &window = program.startWith("T"_s);
        window.BuildAsrLanMenu(false, false);
        program.backend.holdToken = true;
        window.ThirdPartyActive = true; // an input method is left for the row
        QString codeAtTheToken;
        bool methodAtTheToken = true;
        program.backend.server.onRequest = [&](const ScriptedRequest &request) {
            if (request.target.startsWith("/oauth")) {
                codeAtTheToken = Program::setting("BaiDuCurrentVoiceType") + window.BaiDuCurrentVoiceType;
                methodAtTheToken = window.ThirdPartyActive;
                QTimer::singleShot(0, &window, [&] { program.backend.server.answerHeld(); });
            }
        };
        program.choose("粤语(百度版)"_s);
        QCOMPARE(program.backend.askedLike("token"_s), list({"token yby"}));
        QCOMPARE(codeAtTheToken, "15371537"_s);
        QVERIFY(!methodAtTheToken); // a press in that wait would open the method's window again
        QCOMPARE(Program::setting("BaiDuCurrentVoiceType"), "1637"_s);
        QVERIFY(window.recorder()->BaiDuNoStreamApi && !window.recorder()->UseTXASRApi);
        QVERIFY(program.backend.asked.last().contains(QLatin1String("UseBDAPIPara ='1'")));
        program.backend.asked.clear();
        program.choose("粤语(百度版)"_s); // in force already
        QVERIFY(program.backend.askedLike("token"_s).isEmpty());
    }

    void whatComesWhileTheAccountIsFetchedHolds_data() { flagRows("an exit", "another row"); }
    void whatComesWhileTheAccountIsFetchedHolds()
    {
        const auto [exit] = rowOf<bool>();
        Program program;
        MainWindow &window = program.startWith("T"_s);
        window.BuildAsrLanMenu(false, false);
        program.backend.holdToken = true;
        program.backend.server.onRequest = [&, &exit = exit](const ScriptedRequest &request) {
            if (request.target.startsWith("/oauth")) {
                QTimer::singleShot(0, &window, [&, exit] {
                    exit ? window.exitByItself() : program.choose("英语(讯飞版)"_s);
                    program.backend.server.answerHeld();
                });
            }
        };
        program.choose("粤语(百度版)"_s);
        QCOMPARE(Program::setting("BaiDuCurrentVoiceType"), exit ? "1637"_s : "1537"_s);
        if (exit) {
            QVERIFY(window.recorder() == nullptr);
        } else {
            QVERIFY(window.recorder()->UseXunFeiWebApi && !window.recorder()->BaiDuNoStreamApi);
            QCOMPARE(Program::setting("XunFeiWebApiCurrentVoiceType"), "en_us"_s);
            // The account that was drawn is not that of Baidu's language in force.
            program.backend.server.onRequest = nullptr;
            program.backend.holdToken = false;
            program.backend.asked.clear();
            program.choose("普通话(百度版)"_s);
            QCOMPARE(program.backend.askedLike("token"_s), list({"token zbb"}));
        }
    }

    void noEngineIsToldWithAnEmptyStatement()
    {
        Program program;
        MainWindow &window = program.startWith(QString());
        window.BuildAsrLanMenu(true, false);
        QCOMPARE(program.backend.asked, list({"main "}));
    }

    void whatTheRecordHidesLeavesTheMenu()
    {
        Program program;
        MainWindow &window = program.startWith("B"_s);
        const auto rows = [&] {
            QStringList texts;
            for (const QAction *action : window.languageMenu()->actions()) {
                texts.append(action->text());
            }
            return texts.join(u'|');
        };
        const auto read = [&](std::initializer_list<QPair<QString, QJsonValue>> columns) {
            program.backend.record = columns;
            window.ReadServerInfo();
            return rows();
        };
        QVERIFY(rows().contains("普通话(讯飞版)"_s) && rows().contains("粤语(百度版)"_s));
        QString seen = read({{"ShowXFWebApi"_s, "0"_s}, {"ShowBdYYI"_s, "0"_s}});
        QVERIFY(!seen.contains("讯飞版"_s) && !seen.contains("粤语(百度版)"_s));
        QVERIFY(seen.contains("普通话(百度版)"_s) && window.recorder()->BaiDuNoStreamApi);
        seen = read({{"ShowBaiduI"_s, "0"_s}});
        QVERIFY(!seen.contains("百度版"_s) && window.recorder()->UseTXASRApi);
        QCOMPARE(Program::setting("UseTXASRApi"), "1"_s);
        mevo::SettingsFile().setValue("TXCurrentVoiceType"_s, "16k_zh_dialect"_s);
        window.TXCurrentVoiceType = "16k_zh_dialect"_s;
        read({{"ShowTecentZhDialect"_s, "0"_s}});
        QCOMPARE(window.TXCurrentVoiceType, "16k_zh"_s);
        QCOMPARE(Program::setting("TXCurrentVoiceType"), "16k_zh"_s);
        read({{"EnableASR3"_s, "1"_s}, {"HW2ScreenIntervalTime"_s, "25"_s}});
        QVERIFY(window.EnableASR3 && window.LocalEnableASR3 && !window.ThirdPartyActive); // nobody has agreed
        QCOMPARE(Program::setting("HW2ScreenIntervalTime"), "25"_s);
        QCOMPARE(program.backend.asked.takeLast(),
                 "main select * from mevodb.asr3setting where ASR3Index=1"_s);
        for (const QString &each : program.backend.asked) {
            QCOMPARE(each, "main "_s + readRecord);
        }
    }

    void aRecordThatIsNotThereIsMade_data()
    {
        const Rows<QJsonValue, bool, bool> row; // count, refused, made
        row("no row", QJsonValue(0), false, true);
        row("two rows", QJsonValue("2"_s), false, true);
        row("refused", QJsonValue(0), true, false);
        row("no count", QJsonValue(QJsonValue::Undefined), false, false);
        row("a count that is none", QJsonValue("many"_s), false, false);
    }

    void aRecordThatIsNotThereIsMade()
    {
        const auto [count, refused, made] = rowOf<QJsonValue, bool, bool>();
        Program program;
        MainWindow &window = program.startWith("B"_s);
        program.backend.recordCount = count;
        program.backend.refused = refused ? "insert into"_s : QString();
        window.ShowASR3UI = false;
        window.BuildAsrLanMenu(false, false);
        window.ReadServerInfo();
        if (!refused) {
            const QString row = "使用讯飞语音输入法"_s; // shown by a new record
            const QList<QAction *> rows = window.languageMenu()->actions();
            QCOMPARE(std::any_of(rows.begin(), rows.end(),
                                 [&row](const QAction *action) { return action->text() == row; }),
                     made);
        }
        const QStringList inserts = program.backend.askedLike("insert"_s);
        QCOMPARE(inserts.size(), int(made || refused));
        const QRegularExpression insert(
            "^main insert into mevodb\\.device_serialid "
            "\\(DongleID,LastLoginDateTime,CurrentVersion,CurrentSubVer,DefaultRecEngine\\) VALUES "
            "\\('02-01-001357','2026-11-24 09:00:\\d\\d',107,'.+','10'\\)$"_s);
        QVERIFY2(inserts.isEmpty() || insert.match(inserts[0]).hasMatch(), qPrintable(inserts.join(u'|')));
        QCOMPARE(window.BDSR1DUsedQuantity, made ? 0 : 3);
        if (refused) {
            QTRY_VERIFY(window.recorder() == nullptr); // the program has left
            QCOMPARE(program.questions.size(), 1);
            QCOMPARE(program.questions[0].text, "初始化数据错误，请升级安装最新版本软件或联系客服解决！"_s);
        }
        QVERIFY(refused || (window.recorder() != nullptr && program.questions.isEmpty()));
    }

    void repliesThatAreNoneChangeNothing_data()
    {
        QTest::addColumn<QByteArray>("reply");
        const auto wrapped = [](const QString &json) {
            const QByteArray hex = cipher.EncryptString(json).toLatin1();
            return QByteArray::number(hex.size()).rightJustified(5, '0') + hex;
        };
        QTest::newRow("a page") << QByteArray("<!DOCTYPE html><html><body>Log in</body></html>");
        QTest::newRow("one character") << QByteArray("0");
        QTest::newRow("a length alone") << QByteArray("00032");
        QTest::newRow("a wrong length") << QByteArray("00033") + wrapped("{}"_s).mid(5);
        QTest::newRow("no cipher text") << QByteArray("00004zzzz");
        QTest::newRow("1 MB") << QByteArray(1000000, '7');
        QTest::newRow("an empty object") << wrapped("{}"_s);
        QTest::newRow("a list") << wrapped("[1]"_s);
        QTest::newRow("a row announced and not sent") << wrapped(QStringLiteral(R"({"items":"1"})"));
        QTest::newRow("a row that is a text") << wrapped(QStringLiteral(R"({"items":1,"result0":"x"})"));
        QTest::newRow("an empty row") << wrapped(QStringLiteral(R"({"items":1,"result0":{}})"));
    }

    void repliesThatAreNoneChangeNothing()
    {
        QFETCH(QByteArray, reply);
        Program program;
        MainWindow &window = program.startWith("B"_s);
        window.ShowPowerLevel = true;
        program.backend.recordReply = reply;
        const QByteArray settings = home.read("MEVOSetting.ini"_s);
        const QString address = window.IPRecord;
        window.ReadServerInfo();
        QCOMPARE(program.backend.asked, QStringList("main "_s + readRecord));
        QCOMPARE(home.read("MEVOSetting.ini"_s), settings);
        QVERIFY(window.recorder()->BaiDuNoStreamApi && window.BDSR1DUsedQuantity == 3);
        QVERIFY(window.ShowPowerLevel && window.IPRecord == address && window.BackendReachable);
    }

    void otherServersStartTheProgramAnew_data() { flagRows("at its start", "while it runs"); }
    void otherServersStartTheProgramAnew()
    {
        const auto [atStart] = rowOf<bool>();
        const QString address = "http://new.example:19004/mevowebapi?"_s;
        {
            Program program;
            const QJsonObject record{{"TALKINSERVER_BK2"_s, address}, {"ShowTXI"_s, "0"_s}};
            if (atStart) {
                program.backend.record = record;
            }
            MainWindow &window = program.startWith("B"_s);
            if (!atStart) {
                program.backend.record = record;
                window.ReadServerInfo();
            }
            QVERIFY(window.recorder() != nullptr &&
                    window.ShowTXI); // the rest of the row waits for the new start
            const QScopedValueRollback<int> look(MainWindow::quietLookMs, 10);
            window.ResultIdle = false; // a sentence is on its way
            QTimer::singleShot(100, &window, [&window] {
                QVERIFY(window.recorder() != nullptr && !qEnvironmentVariableIsSet("MEVO_SERVER_MOVES"));
                window.ResultIdle = true;
            });
            QCOMPARE(QCoreApplication::exec(), MainWindow::restartCode);
            QCOMPARE(qgetenv("MEVO_SERVER_MOVES"), QByteArray("1"));
            QVERIFY(window.recorder() == nullptr && program.questions.isEmpty());
            QCOMPARE(Program::setting("TKSBK2"), mevo::encipherField(cipher, address));
            QCOMPARE(program.fake.log.calls("message 软件已设置成功，将自动退出，请重新启动软件！ (2000)"_s)
                         .size(),
                     atStart ? 0 : 1); // startWith() has cleared the log of a start
        }
        qputenv("MEVO_SERVER_MOVES", "3"); // of programs before this one
        {
            Program program;
            program.backend.record = {{"TALKINSERVER_BK2"_s, address}, {"ShowTXI"_s, "0"_s}};
            const MainWindow &window = program.start();
            QTest::qWait(50);
            QVERIFY(window.recorder() != nullptr && !window.ShowTXI);
            QCOMPARE(Program::setting("TKSBK2"), mevo::encipherField(cipher, address));
        }
        Program again(true, "TKSBK2=\"" + mevo::encipherField(cipher, address).toLatin1() + "\"\n");
        again.backend.record = {{"TALKINSERVER_BK2"_s, address}, {"ShowTXI"_s, 0}};
        const MainWindow &window = again.start();
        QVERIFY(!window.ShowTXI);                                 // it stands already, and the row is applied
        QVERIFY(!qEnvironmentVariableIsSet("MEVO_SERVER_MOVES")); // a later change is a first one again
        QCOMPARE(window.ServerUrlBk2, address);
    }

    void theVersionColumn_data()
    {
        // version, page (of the product record, for downloads), text (of the box), opened, leaves, told
        const Rows<QString, QString, QString, QStringList, bool, QStringList> row;
        const QString page = "http://download.example/"_s;
        const QString offer = "已有最新版本软件，请下载更新到最新版本！"_s;
        const QString required = "已有最新版本，请下载更新软件后再使用！"_s;
        const QString now = "http://now.example/"_s;
        const QStringList own(
            "main update mevodb.device_serialid set CurrentVersion=107 where DongleID='02-01-001357'"_s);
        const QStringList none;
        row("own", "107", page, "", none, false, none);
        row("offered", "0", page, offer, QStringList(page), false, none);
        row("offered, no page", "0", "", offer, none, false, none);
        row("offered, a program", "0", "file:///bin/true", offer, none, false, none);
        row("page", "1", page, "", QStringList(page), false, none);
        row("required", "2", page, required, QStringList(page), true, none);
        row("the product's page", "3", page, "", QStringList(now), false, none);
        row("another", "106", page, "", none, false, own);
    }

    void theVersionColumn()
    {
        const auto [version, page, text, opened, leaves, told] =
            rowOf<QString, QString, QString, QStringList, bool, QStringList>();
        for (const bool atStart : {true, false}) {
            Program program;
            program.backend.product = {
                {"DownloadDrvWeb"_s, page}, {"VWeb"_s, "http://now.example/"_s}, {"VWebSeed"_s, "1"_s}};
            const QJsonObject record{{"CurrentVersion"_s, version}};
            if (atStart) {
                program.backend.record = record;
            }
            const MainWindow &window = program.start();
            QVERIFY(program.questions.isEmpty() && program.pages.opened.isEmpty()); // a start is not held up
            if (!atStart) {
                program.backend.record = record;
                program.window->ReadServerInfo();
            }
            QTRY_COMPARE(program.pages.opened, opened);
            QTRY_COMPARE(program.questions.size(), int(!text.isEmpty()));
            if (!text.isEmpty()) {
                QCOMPARE(program.questions[0].title + program.questions[0].text, "版本更新"_s + text);
            }
            QTRY_COMPARE(window.recorder() == nullptr, leaves);
            QCOMPARE(program.backend.askedLike("CurrentVersion=107 where"_s), told);
        }
    }

    /// More notices than may be open at once: none is lost, whether they come while somebody speaks or not.
    void noticesThatComeTogetherAreAllShown()
    {
        Program program;
        MainWindow &window = program.start();
        program.backend.delayMs = 3600000; // their pictures are on their way
        window.Recording = true;
        for (int seconds = 1; seconds <= 6; ++seconds) {
            const QString hex = cipher.EncryptString(
                "image;http://%1/a.png;%2;9;a.png;"_s.arg(program.backend.server.host()).arg(seconds));
            window.onOrvWebSocketTextMessageReceived("%1"_s.arg(hex.size(), 5, 10, QLatin1Char('0')) + hex);
        }
        const auto open = [&window] {
            QStringList found;
            for (const CADShowDlg *notice : window.findChildren<CADShowDlg *>()) {
                found.append(QString::number(notice->StaySeconds));
            }
            found.sort();
            return found.join(u' ');
        };
        QCOMPARE(open(), QString());
        window.Recording = false;
        QTRY_COMPARE(open(), "1 2 3 4 5"_s);
        window.findChild<CADShowDlg *>()->close();
        QTRY_COMPARE(open(), "2 3 4 5 6"_s);
    }

    void aBoxThatAnExitClosesOpensNoPage()
    {
        Program program;
        program.backend.product = {{"DownloadDrvWeb"_s, "http://page.example/"_s}};
        MainWindow &window = program.start();
        program.onQuestion = [&] { window.exitByItself(); };
        program.backend.record = {{"CurrentVersion"_s, "0"_s}};
        window.ReadServerInfo();
        QTRY_VERIFY(window.recorder() == nullptr);
        QCOMPARE(program.questions.size(), 1);
        QVERIFY(program.pages.opened.isEmpty());
    }

    /// What was an offer may be a demand by the time the user answers.
    void aNewerVersionIsDemandedWhileItIsOffered()
    {
        Program program;
        const MainWindow &window = program.start();
        program.onQuestion = [&] {
            program.backend.record = {{"CurrentVersion"_s, "2"_s}};
            program.window->ReadServerInfo();
            QTest::qWait(1); // it is said from the event loop, and the offer stands
            QCOMPARE(program.questions.size(), 1);
        };
        program.backend.record = {{"CurrentVersion"_s, "0"_s}};
        program.window->ReadServerInfo();
        QTRY_COMPARE(program.questions.size(), 2);
        QCOMPARE(program.questions[1].text, "已有最新版本，请下载更新软件后再使用！"_s);
        QTRY_VERIFY(window.recorder() == nullptr);
    }

    void theDayOfCounting_data()
    {
        const Rows<QJsonValue, QString> row; // began, told
        const QString keep = "main update mevodb.device_serialid set "
                             "LatestLoginTime='2026-11-24 09:00:00'  where DongleID='02-01-001357'"_s;
        const QString begin =
            "main update mevodb.device_serialid set BDSR1DUsedQuantity=0, "
            "TXSR1DUsedQuantity=0,XFSR1DUsedQuantity=0,BDFY1MUsedQuantity=0,LastLoginDateTime='2026-11-24 "
            "09:00:00'  where DongleID='02-01-001357'"_s;
        row("24 h", QJsonValue("2026-11-23T09:00:00"_s), keep);
        row("24 h and a second", QJsonValue("2026-11-23T08:59:59"_s), begin);
        row("broken", QJsonValue("0000-00-00 00:00:00"_s), begin);
        row("absent", QJsonValue(QJsonValue::Undefined), QString());
    }

    void theDayOfCounting()
    {
        const auto [began, told] = rowOf<QJsonValue, QString>();
        Program program;
        MainWindow &window = program.startWith("B"_s);
        program.fake.time->start = program.fake.time->start.addMSecs(-program.fake.time->monotonicMs());
        program.backend.record = {
            {"BDSR1DUsedQuantity"_s, 500}, {"BDFY1MUsedQuantity"_s, 7}, {"LastLoginDateTime"_s, began}};
        window.BaiduQuotaHit = window.TencentQuotaHit = true; // Tencent has some left, the record says
        window.ReadServerInfo();
        const QStringList asked = program.backend.asked.mid(1);
        QCOMPARE(asked, told.isEmpty() ? QStringList() : QStringList(told));
        const bool over = told.contains(QLatin1String("LastLogin"));
        QCOMPARE(window.BDSR1DUsedQuantity, over ? 0 : 500);
        QCOMPARE(window.BDFY1MUsedQuantity, over ? 0 : 7);
        QCOMPARE(window.BaiduQuotaHit, !over);
        QVERIFY(!window.TencentQuotaHit);
    }

    void theReadingEndsWithWhatItIsAbout_data()
    {
        // exit (or a removal of the receiver), rows, request (that it comes at), newMethod (the record
        // would use an input method from now on)
        const Rows<bool, int, int, bool> row;
        for (const bool exit : {true, false}) {
            const char *const what = exit ? "exit" : "removal";
            row(rowName("%s, record", what), exit, 1, 1, false);
            row(rowName("%s, new record", what), exit, 0, 2, false);
            row(rowName("%s, input method", what), exit, 1, 2, true);
            row(rowName("%s, version", what), exit, 1, 2, false);
            row(rowName("%s, day", what), exit, 1, 3, false);
            row(rowName("%s, lists", what), exit, 1, 4, false);
        }
    }

    void theReadingEndsWithWhatItIsAbout()
    {
        const auto [exit, rows, request, newMethod] = rowOf<bool, int, int, bool>();
        Program program;
        MainWindow &window = program.startWith(QString()); // no counter is written at the exit
        home.remove("bbzdsrbdssset.ini"_s);
        program.backend.record = {{"CurrentVersion"_s, "106"_s}, {"LastLoginDateTime"_s, "x"_s}};
        if (newMethod) {
            program.backend.record.insert("EnableASR3"_s, "1"_s);
        }
        program.backend.recordCount = rows;
        program.backend.refused = rows == 0 ? "insert into"_s : QString();
        program.backend.delayMs = 30;
        int count = 0;
        program.backend.server.onRequest = [&, &exit = exit, &request = request](const ScriptedRequest &) {
            if (++count == request) {
                QTimer::singleShot(0, &window, [&] {
                    if (exit) {
                        window.exitByItself();
                        return;
                    }
                    program.fake.hid->unplug();
                    program.fake.deviceNotifier->report(mevo::DeviceNotifier::Change::Removal);
                });
            }
        };
        const int used = window.BDSR1DUsedQuantity = window.BDSR1DReadQuantity = 7;
        window.ReadServerInfo();
        QTRY_VERIFY(!window.DeviceConnected);
        QTest::qWait(50); // what would come later
        QCOMPARE(window.recorder() == nullptr, exit);
        QVERIFY(std::none_of(program.questions.begin(), program.questions.end(),
                             [](const auto &question) { return question.text.contains("最新版本"_s); }));
        QVERIFY2(program.backend.asked.size() == request,
                 qPrintable(program.backend.asked.join(QLatin1Char('\n'))));
        if (exit) { // without a receiver nobody's counts are at hand
            QCOMPARE(window.BDSR1DUsedQuantity == used, request < 3 || rows == 0);
        }
    }

    void listsThatAreMissingAreMadeGood()
    {
        Program program;
        MainWindow &window = program.startWith("B"_s);
        for (const char *file : {"bbzdsrbdssset.ini", "byydsrbdssset.ini", "besrfdssset.ini"}) {
            home.remove(QLatin1String(file));
        }
        window.BaiduClientId.clear();
        program.backend.record = {{"ShowBdYYI"_s, "0"_s}};
        program.backend.refused = readRecord; // no address answers, and the lists are fetched all the same
        window.ShowBdYYI = false;
        window.ReadServerInfo();
        QStringList lists = program.backend.asked.mid(3);
        lists.sort();
        QCOMPARE(lists, (list({"main select F0,F1,F2 from mevodb.bdasrid where F3 = 1 and zbb = 1",
                               "main select F0,F1,F2 from mevodb.wxfasrid where F3 = 1"})));
        QCOMPARE(window.BaiduClientId, "zbb"_s);
        program.backend.asked.clear();
        window.ReadServerInfo();
        QCOMPARE(program.backend.askedLike("select F0"_s), QStringList());
    }

    void anEngineThatIsUsedUpGivesWayToTencent_data()
    {
        QTest::addColumn<QString>("engine");
        QTest::newRow("Baidu") << "B";
        QTest::newRow("XunFei") << "X";
    }

    void anEngineThatIsUsedUpGivesWayToTencent()
    {
        QFETCH(QString, engine);
        Program program;
        MainWindow &window = program.startWith(engine);
        window.BDSR1DMaxUsageQuantity = 3;
        window.XFSR1DMaxUsageQuantity = 5;
        window.Recording = true;
        window.updateRecCountsTimerOut();
        QVERIFY(!window.recorder()->UseTXASRApi); // the session that runs ends first
        const QString told = "message 今日语音识别次数已用完，已自动切换到腾讯语音识别！ (3000)"_s;
        QVERIFY(!program.fake.log.has(told));
        window.Recording = false;
        window.updateRecCountsTimerOut();
        const AudioRecorder &recorder = *window.recorder();
        QVERIFY(recorder.UseTXASRApi && !recorder.BaiDuNoStreamApi && !recorder.UseXunFeiWebApi);
        QVERIFY(!window.BaiduQuotaHit && !window.XunFeiQuotaHit && program.questions.isEmpty());
        QCOMPARE(Program::setting("TXCurrentVoiceType"), "16k_zh"_s); // none had been chosen
        QCOMPARE(Program::setting("UseTXASRApi") + Program::setting("BaiDuNoStreamApi") +
                     Program::setting("UseXunFeiWebApi"),
                 "100"_s);
        QTRY_COMPARE(program.backend.askedLike("UseTXAPIPara= '1'"_s).size(), 1);
        QVERIFY(program.fake.log.has(told));
    }

    /// What the backend has not heard of the box is told before the record is read again, also by the next
    /// run; a row of the menu that is chosen meanwhile takes its place.
    void theBoxIsToldAgain_data() { flagRows("a row is chosen", "told again"); }
    void theBoxIsToldAgain()
    {
        const auto [rowChosen] = rowOf<bool>();
        Program program;
        program.answer = 1;
        MainWindow &window = program.startWith("T"_s);
        window.TXSR1DMaxUsageQuantity = 4;
        program.backend.refused = "EnableASR3"_s;
        window.updateRecCountsTimerOut();
        const QString untold = "EnableASR3=1;MustClickRunASR3=0;UseASR3Index=2"_s;
        QTRY_COMPARE(Program::setting("RecordChoicesUntold"), untold);
        if (rowChosen) {
            program.choose("英语(讯飞版)"_s);
        } else {
            window.ReadServerInfo();
            QCOMPARE(Program::setting("RecordChoicesUntold"), untold);
            QVERIFY(window.LocalEnableASR3);
        }
        program.backend.refused.clear();
        program.backend.asked.clear();
        window.EnableASR3 = false; // as the record says
        window.ReadServerInfo();
        QCOMPARE(program.backend.askedLike("set EnableASR3=1,MustClickRunASR3=0,UseASR3Index=2"_s).size(),
                 int(!rowChosen));
        QCOMPARE(program.backend.askedLike("set EnableASR3=0"_s).size(), int(rowChosen));
        QCOMPARE(Program::setting("RecordChoicesUntold"), QString());
    }

    void theBoxOfUsedUpEngines_data()
    {
        // answer, shown (input methods are), xpClass (where Tencent does not take over), vertical
        const Rows<int, bool, bool, bool> row;
        row("XunFei", 0, true, false, false);
        row("Sogou", 1, true, false, true);
        row("neither", 2, false, false, false);
        row("closed", -1, false, true, false);
    }

    void theBoxOfUsedUpEngines()
    {
        const auto [answer, shown, xpClass, vertical] = rowOf<int, bool, bool, bool>();
        Program program;
        MainWindow &window = program.startWith(xpClass ? "B"_s : "T"_s);
        program.answer = answer;
        program.fake.systemFacts->xpClass = xpClass;
        window.ShowASR3UI = shown;
        window.ShowVerticalUI = vertical;
        window.MustClickRunASR3 = true;
        window.BDSR1DMaxUsageQuantity = 3;
        window.TXSR1DMaxUsageQuantity = 4;
        window.micTip()->show();
        window.ExitInProgress = true;
        window.updateRecCountsTimerOut();
        QVERIFY(program.questions.isEmpty());
        window.ExitInProgress = false;
        const QByteArray before = home.read("MEVOSetting.ini"_s);
        window.updateRecCountsTimerOut();
        window.updateRecCountsTimerOut(); // one box at a time
        QCOMPARE(program.questions.size(), 1);
        const mevo::Question question = program.questions[0];
        QCOMPARE(question.title, "超出限量"_s);
        QCOMPARE(
            question.text,
            shown ? "已超出各接口每天限制使用次数，如继续使用，请选择使用讯飞输入法或搜狗语音输入法(f001)!"_s
                  : "已超出各接口每天限制使用次数,请24小时后再使用(f001)！"_s);
        QCOMPARE(question.buttons, list({"使用讯飞语音输入法", "使用搜狗语音输入法", "退出"}));
        QVERIFY(question.warning && question.defaultButton == 2);
        using Meaning = mevo::Answer; // closing the box leaves it
        QVERIFY(question.meanings == (std::vector<Meaning>{Meaning::Accept, Meaning::Accept, Meaning::Back}));
        QVERIFY(xpClass ? window.BaiduQuotaHit : window.TencentQuotaHit);
        if (answer == 0 || answer == 1) {
            const QRegularExpression told(
                "^main update mevodb\\.device_serialid set EnableASR3=1,MustClickRunASR3=1,"
                "UseASR3Index=%1,CurrentVersion=107,CurrentSubVer='.+' where "
                "DongleID='02-01-001357'$"_s.arg(answer + 1));
            QTRY_COMPARE(program.backend.asked.filter(told).size(), 1);
            // XunFei's is set up at once, and is not there.
            const QString said = answer == 0
                                     ? "message 讯飞输入法没有安装"_s
                                     : "message 已选择搜狗语音输入法，将在下次启动软件或插入设备时设置"_s;
            QTRY_VERIFY(program.fake.log.calls(said).size() > 0);
            QVERIFY(!window.micTip()->isVisible() && window.EnableASR3 && window.UseASR3Index == answer + 1);
            QCOMPARE(Program::setting("LocalEnableASR3") + Program::setting("LocalUseASR3Index"),
                     "1%1"_s.arg(answer + 1));
            const QString picture = window.findChild<QPushButton *>("pushBuutton_VoiceType"_s)->styleSheet();
            QVERIFY2(answer == 0 || picture.contains(":/rec/xunfeiV.png"_s), qPrintable(picture));
            QTRY_COMPARE(program.backend.askedLike("UseTXAPIPara= '1'"_s).size(), int(answer == 0));
        } else {
            QTest::qWait(0);
            QCOMPARE(home.read("MEVOSetting.ini"_s), before);
            QVERIFY(window.micTip()->isVisible() && program.backend.askedLike("EnableASR3"_s).isEmpty());
        }
        QTRY_VERIFY([&] { // and it comes back after the next session, unless an input method is chosen
            window.updateRecCountsTimerOut();
            return window.LocalEnableASR3 || program.questions.last().title == question.title;
        }());
        QCOMPARE(window.LocalEnableASR3, answer == 1);
    }

    void theFirstArrivalSettlesTheEngine_data()
    {
        // first, inputMethod (the record would use one), fast, chosen (by the user, before it comes),
        // settles, tells
        const Rows<bool, bool, bool, bool, bool, bool> row;
        row("first", true, true, false, false, true, true);
        row("fast variant", true, true, true, false, true, false);
        row("not the first", false, true, false, false, false, false);
        row("no input method", true, false, false, false, false, false);
        row("the user was first", true, true, false, true, false, false);
    }

    void theFirstArrivalSettlesTheEngine()
    {
        const auto [first, inputMethod, fast, chosen, settles, tells] =
            rowOf<bool, bool, bool, bool, bool, bool>();
        Program program;
        MainWindow &window = program.startWith("T"_s);
        using Change = mevo::DeviceNotifier::Change;
        program.fake.deviceNotifier->report(Change::Removal);
        QTRY_VERIFY(!window.DeviceConnected);
        window.FirstRunApp = first;
        if (chosen) {
            program.choose("英语(腾讯版)"_s);
        }
        window.EnableASR3 = inputMethod;
        window.BaiDuNoStreamApi_FastVersion = fast;
        program.backend.asked.clear();
        program.fake.log.clear();
        program.fake.deviceNotifier->report(Change::Arrival);
        const QString lastStep = "sibling \\KeypadHost.exe ORVKBAppHide"_s;
        QTRY_VERIFY(program.fake.log.has(lastStep));
        QCOMPARE(window.recorder()->BaiDuNoStreamApi, settles);
        QCOMPARE(window.FirstRunApp, first && !settles && !chosen);
        QCOMPARE(Program::setting("FirstRunApp"), settles || chosen ? "0"_s : QString());
        QCOMPARE(Program::setting("LocalUseASR3Index"), settles || chosen ? "-1"_s : QString());
        const QStringList told = program.backend.askedLike("UseBDFstPara"_s);
        QCOMPARE(!told.isEmpty(), tells);
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
