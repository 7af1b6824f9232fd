#include "app/RunProgram.h"
#include "support/Rows.h"
#include "support/ScriptedHttp.h"
#include "window/Program.h"

#include <QMenu>
#include <QMessageBox>

#include <csignal>

using namespace calls; // NOLINT(google-build-using-namespace)
using Change = mevo::DeviceNotifier::Change;

namespace {

/// The services of a run: request number `at`, counted from 1, is left unanswered or answered late, and
/// something happens meanwhile.
class Services
{
public:
    Services()
    {
        m_server.onRequest = [this](const ScriptedRequest &request) {
            m_targets.append(request.target);
            if (++m_count == m_at) {
                QTimer::singleShot(0, &m_server, [this] {
                    m_happening();
                    if (m_answers) {
                        m_server.answerHeld();
                    }
                });
            }
            prepareNext();
        };
    }
    QString host() const { return m_server.host(); }
    /// Requests since at(), or since the beginning.
    int count() const { return m_count; }
    bool wasAsked(const QByteArray &target) const { return m_targets.contains(target); }
    void at(int request, bool answers, std::function<void()> happening)
    {
        m_count = 0;
        m_at = request;
        m_answers = answers;
        m_happening = std::move(happening);
        prepareNext();
    }

private:
    void prepareNext()
    {
        const ScriptedAnswer answer = ScriptedAnswer::body("{}");
        m_server.fallback = m_count + 1 == m_at ? ScriptedAnswer::late(answer) : answer;
    }

    ScriptedHttp m_server;
    QByteArrayList m_targets;
    int m_count = 0;
    int m_at = 0;
    bool m_answers = true;
    std::function<void()> m_happening;
};

MainWindow &window()
{
    return *MainWindow::instance();
}

void key(bool down)
{
    char report[mevo::keyReportSize] = {1, char(mevo::keyReportMarker), mevo::KeyVoice, char(down)};
    window().ProcessResult(report);
}

/// What the program waits in, apart from its start, and how one sees that it is over.
struct Action
{
    const char *name;
    void (*run)(Program &program);
    bool (*over)(const Program &program) = [](const Program &) { return true; };
};

bool recognised(const Program &)
{
    return window().BDSR1DUsedQuantity > 0;
}

/// A receiver that is pulled out takes its count with it: it is named, so that one sees the count.
bool recognisedAfterRemoval(const Program &program)
{
    if (!window().DeviceConnected) {
        window().DongleID = "02-01-001357"_s;
        window().dayCounts.follow();
    }
    return recognised(program);
}

const Action actions[] = {
    {"the network comes", [](Program &) { window().TimeOutReadInitPara(); }},
    {"a language is chosen",
     [](Program &) {
         for (QAction *row : window().languageMenu()->actions()) {
             if (row->text() == "粤语(百度版)"_s) {
                 row->trigger();
                 QCoreApplication::processEvents(); // the choice is made from the event loop
                 return;
             }
         }
         QFAIL("no such row");
     }},
    {"a sentence is recognised",
     [](Program &) {
         window().BaiduAccessToken.clear();
         key(true);
         key(false);
     },
     recognised},
    {"the receiver is pulled out while a key is held",
     [](Program &program) {
         key(true);
         program.change(Change::Removal);
     },
     recognisedAfterRemoval},
    {"the receiver comes back",
     [](Program &program) {
         program.change(Change::Removal);
         program.change(Change::Arrival);
     },
     [](const Program &program) { return program.fake.log.calls(keypadHide).size() == 3; }},
    {"the user leaves", [](Program &) { window().on_exitAppAction(); }},
};

/// Runs the program, with `action` once it has started, and ends it when `over` says so.
int run(Program &program, const std::function<void()> &action, const std::function<bool()> &over)
{
    bool done = false;
    const WhenRunning start([&] {
        QTimer::singleShot(0, &window(), [&] {
            action();
            done = true;
        });
    });
    QTimer end;
    QObject::connect(&end, &QTimer::timeout, [&] {
        if (done && MainWindow::instance() != nullptr && over()) {
            end.stop();
            window().exitByItself();
        }
    });
    end.start(1);
    return mevo::runProgram(program.fake.platform);
}

/// The exit was walked, and nothing waited for what nobody needs any more.
void verifyGone(const Program &program, const QElapsedTimer &elapsed, int limitMs = 1500)
{
    QVERIFY(program.fake.log.has(keypadExit) && program.fake.log.has(hidExit));
    QCOMPARE(program.fake.hid->openHandles.load(), 0);
    QVERIFY(MainWindow::instance() == nullptr);
    QVERIFY2(elapsed.elapsed() < limitMs, qPrintable(QString::number(elapsed.elapsed())));
}

/// The ways out of the program.
void leave(const QString &how)
{
    if (how == QLatin1String("signal")) {
        ::raise(SIGTERM);
    } else if (how == QLatin1String("by itself")) {
        window().exitByItself();
    } else {
        window().on_exitAppAction();
    }
}

} // namespace

class TestWindowWaits : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void exitWhileTheProgramIsMade_data()
    {
        // certain (nobody can call it back, so nothing more is waited for), answer
        const Rows<bool, int> row;
        row("signal", true, Program::leave);
        row("by itself", true, Program::leave);
        row("by the user", false, Program::leave);
        row("called back", false, Program::back);
    }
    /// In each wait of the construction.
    void exitWhileTheProgramIsMade()
    {
        const auto [certain, answer] = rowOf<bool, int>();
        const QString how = QString::fromLatin1(QTest::currentDataTag());
        int waits = 0;
        {
            Services services;
            Program program(true, services.host());
            program.start();
            waits = services.count();
        }
        QVERIFY(waits >= 3);
        for (int at = 1; at <= waits; ++at) {
            Services services;
            Program program(true, services.host());
            program.answer = answer;
            services.at(at, !certain, [&how] { leave(how); });
            QElapsedTimer elapsed;
            elapsed.start();
            bool ran = false;
            const int code = run(
                program, [&ran] { ran = true; },
                [&] { return program.questions.size() == 1 && !window().ExitInProgress; });
            QCOMPARE(code, 0);
            verifyGone(program, elapsed);
            QVERIFY(ran || answer == Program::leave);
            QCOMPARE(program.questions.size(), certain ? 0 : 1);
        }
    }

    void twoReceiversAtTheStart()
    {
        Services services;
        Program program(true, services.host());
        for (const mevo::HidEntry &entry : FakeHid::receiver("/dev/hidraw7")) {
            program.fake.hid->entries.push_back(entry);
        }
        QElapsedTimer elapsed;
        elapsed.start();
        QCOMPARE(mevo::runProgram(program.fake.platform), 0);
        verifyGone(program, elapsed);
        QVERIFY(program.questions.isEmpty());
    }

    void aSecondStartWhileTheProgramIsMade()
    {
        Services services;
        Program program(true, services.host());
        services.at(1, true, [&program] { program.fake.singleInstance->startAgain(); });
        bool shown = false;
        QCOMPARE(run(
                     program, [] {},
                     [&shown] {
                         const auto *menu =
                             window().findChild<QMenu *>(QString(), Qt::FindDirectChildrenOnly);
                         shown = menu->isVisible();
                         return shown;
                     }),
                 0);
        QVERIFY(shown);
    }

    void aSecondStartWhileTheStartIsGivenUp_data() { flagRows("while it is", "before the exit is walked"); }
    /// What it was promised is kept, although the event loop never runs.
    void aSecondStartWhileTheStartIsGivenUp()
    {
        const auto [walked] = rowOf<bool>();
        Services services;
        Program program(true, services.host());
        const auto startAgain = [&program] {
            program.fake.singleInstance->startAgain("settings");
            program.fake.singleInstance->startAgain();
        };
        services.at(1, false, [&, &walked = walked] {
            ::raise(SIGTERM);
            QTimer::singleShot(0, qApp, [&] { // behind the signal, which comes through the event loop
                QTRY_VERIFY(window().isGoingDown());
                if (!walked) {
                    startAgain();
                }
            });
        });
        program.fake.processes->onSibling = [&, &walked = walked](const QString &) {
            if (walked && window().isLeaving()) {
                startAgain();
            }
        };
        QCOMPARE(mevo::runProgram(program.fake.platform), 0);
        QCOMPARE(program.fake.singleInstance->answers.size(), 2);
        for (const QByteArray &answer : qAsConst(program.fake.singleInstance->answers)) {
            QVERIFY2(answer.contains("done"), answer.constData());
        }
        const QString started = "start "_s + QCoreApplication::applicationFilePath() + " --settings"_s;
        QCOMPARE(program.order({"lock released"_s, started}), (QStringList{"lock released"_s, started}));
        QVERIFY(!program.fake.singleInstance->called); // nobody is kept waiting
    }

    void exitInsideEveryWait_data()
    {
        const Rows<int, QString> row; // action, how
        for (const char *how : {"by itself", "by the user"}) {
            for (int i = 0; i < int(std::size(actions)); ++i) {
                row(rowName("%s, %s", actions[i].name, how), i, QString::fromLatin1(how));
            }
        }
    }
    void exitInsideEveryWait()
    {
        const auto [action, how] = rowOf<int, QString>();
        const Action &each = actions[action];
        int waits = 1;
        for (int at = 0; at <= waits; ++at) { // the first round finds out how many there are
            Services services;
            Program program(true, services.host());
            QElapsedTimer elapsed;
            elapsed.start();
            const int code = run(
                program,
                [&, &how = how] {
                    services.at(at, false, [&how] { leave(how); });
                    each.run(program);
                },
                [&] {
                    waits = at == 0 ? services.count() : waits;
                    return each.over(program);
                });
            QCOMPARE(code, 0);
            verifyGone(program, elapsed, 3000); // a statement of the exit's own is waited for 2 s
            waits = at == 0 ? std::max(waits, services.count()) : waits; // it may be gone between two looks
        }
        QVERIFY(waits >= 1);
    }

    /// It is sent once its token is there.
    void exitWhileASentenceWaitsForItsToken()
    {
        for (const char *how : {"by itself", "by the user"}) {
            Services services;
            Program program(true, services.host());
            MainWindow::exitWaitMs = 2000;
            const auto sentence = [&] {
                services.at(1, true, [how] { leave(QString::fromLatin1(how)); });
                window().BaiduAccessToken.clear();
                key(true);
                key(false);
            };
            QCOMPARE(run(program, sentence, [] { return window().isGoingDown(); }), 0);
            QVERIFY(services.wasAsked("/server_api"));
        }
    }

    /// A receiver that answers nothing: the told attempts, and an exit or a removal at any moment of them.
    void aMuteReceiver_data()
    {
        const Rows<bool, QString, int> row; // atTheStart, happening, after (milliseconds)
        for (const bool atTheStart : {true, false}) {
            const char *when = atTheStart ? "start" : "arrival";
            row(rowName("%s, nothing", when), atTheStart, QString(), 0);
            for (const char *happening : {"exit", "removal"}) {
                for (const int after : {0, 1, 99, 101, 350, 599, 620, 5000}) {
                    row(rowName("%s, %s after %d ms", when, happening, after), atTheStart,
                        QString::fromLatin1(happening), after);
                }
            }
        }
    }
    void aMuteReceiver()
    {
        const auto [atTheStart, happening, after] = rowOf<bool, QString, int>();
        Program program;
        program.fake.networkState->kind = mevo::NetworkState::Connection::None; // the clock alone counts
        if (!atTheStart) {
            program.start();
            program.change(Change::Removal);
            program.settle();
        }
        program.fake.hid->identityReply.clear();
        program.fake.log.clear();
        program.window ? program.window->DongleID.clear() : void();
        const qint64 begin = program.fake.time->monotonicMs();
        qint64 happened = begin;
        if (!happening.isEmpty()) {
            program.fake.time->callAfter(after, qApp, [&, &happening = happening] {
                happened = program.fake.time->monotonicMs();
                happening == QLatin1String("exit") ? window().exitByItself()
                                                   : program.change(Change::Removal);
            });
        }
        if (atTheStart) {
            program.start();
        } else {
            program.change(Change::Arrival);
        }
        program.settle();
        const qint64 lasted = program.fake.time->monotonicMs() - begin;
        const int attempts = int(program.fake.log.calls(identity).size());
        if (happening.isEmpty()) {
            QCOMPARE(attempts, atTheStart ? 12 : 52);
            const qint64 told = atTheStart ? 12 * 600 : 52 * 600 + 51 * 50;
            // Each attempt may wait up to 100 ms more until the reader pauses, and looks every 5 ms.
            QVERIFY2(lasted >= told && lasted <= told + 52 * 105, qPrintable(QString::number(lasted)));
            QCOMPARE(program.window->isLeaving(), !atTheStart);
            return;
        }
        QVERIFY(program.fake.time->monotonicMs() - happened <= 105); // noticed at its next step
        QVERIFY(attempts <= after / 600 + 1);
        QCOMPARE(program.window->isLeaving(), happening == QLatin1String("exit"));
        QVERIFY(!program.window->deviceOpen() && !program.window->DeviceIDBusy);
        QVERIFY(program.window->HeartbeatTimerId == 0);
        QVERIFY(program.questions.isEmpty());
    }

    void aLoosePlug_data()
    {
        const Rows<bool, bool, int> row; // online, session, step
        row("offline", false, false, 50);
        row("online", true, false, 150);
        row("mid-session", true, true, 300);
    }
    /// Out, in, and after every pair of delays out and in once more: afterwards the receiver hears its
    /// heartbeat, and a key reaches the session. And the same with the plug left out.
    void aLoosePlug()
    {
        const auto [online, session, step] = rowOf<bool, bool, int>();
        constexpr int longestMs = 1500;
        Program program;
        program.fake.networkState->kind =
            online ? mevo::NetworkState::Connection::Lan : mevo::NetworkState::Connection::None;
        program.fake.hid->waitLimitMs = 1; // a reader that is stopped is back at once
        program.start();
        for (int out = 0; out <= longestMs; out += step) {
            for (int in = 0; in <= longestMs; in += step) {
                if (session) {
                    key(true);
                    QVERIFY(window().Recording);
                }
                program.change(Change::Removal);
                program.change(Change::Arrival);
                program.fake.time->callAfter(out, qApp, [&program] { program.change(Change::Removal); });
                program.settle();
                QVERIFY(!window().deviceOpen() && window().DongleID.isEmpty() && !window().isVisible());
                QVERIFY(window().HeartbeatTimerId == 0 && !window().Recording);

                program.fake.time->callAfter(0, qApp, [&program] { program.change(Change::Arrival); });
                program.fake.time->callAfter(out, qApp, [&program] { program.change(Change::Removal); });
                program.fake.time->callAfter(out + in, qApp, [&program] { program.change(Change::Arrival); });
                program.settle();
                const QString delays = "out %1, in %2"_s.arg(out).arg(in);
                QVERIFY2(window().deviceOpen() && !window().DeviceIDBusy, qPrintable(delays));
                QCOMPARE(window().DongleID, "02-01-001357"_s);
                QVERIFY(window().isVisible() && !window().isLeaving());
                QTimerEvent beat(window().HeartbeatTimerId);
                program.fake.log.clear();
                QCoreApplication::sendEvent(program.window.get(), &beat);
                QVERIFY2(program.fake.log.has(heartbeat) && window().HeartbeatOK, qPrintable(delays));
            }
        }
        QVERIFY(program.questions.isEmpty());
        program.key(mevo::KeyVoice, true);
        QTRY_VERIFY(window().Recording);
    }

    /// The system reports a receiver that is gone already when it is to be opened; its removal comes later,
    /// or never.
    void anArrivalOfWhatIsGone()
    {
        for (const bool removalComes : {true, false}) {
            Program program(false);
            program.fake.networkState->kind = mevo::NetworkState::Connection::None;
            program.start();
            program.fake.deviceNotifier->report(Change::Arrival);
            if (removalComes) {
                program.fake.time->callAfter(2000, qApp, [&] { program.change(Change::Removal); });
            }
            program.settle();
            QCOMPARE(program.questions.isEmpty(), removalComes);
            QCOMPARE(window().isLeaving(), !removalComes);
            QVERIFY(!window().deviceOpen());
        }
    }

    void changesWhileTheProgramIsMade()
    {
        Services services;
        Program program(true, services.host());
        services.at(1, true, [&program] {
            program.change(Change::Removal);
            program.change(Change::Arrival);
        });
        program.start();
        program.settle();
        program.key(mevo::KeyVoice, true);
        QTRY_VERIFY(window().Recording);
        QVERIFY(window().deviceOpen() && !window().DongleID.isEmpty());
    }

    void changesWhileTheUserIsAsked()
    {
        Started program;
        program.answer = Program::back;
        program.onQuestion = [&program] {
            program.change(Change::Removal);
            program.change(Change::Arrival);
            program.settle();
            QVERIFY(program.fake.log.calls(goodbye).isEmpty()); // they wait
        };
        window().on_exitAppAction();
        QCOMPARE(program.questions.size(), 1);
        program.settle();
        program.key(mevo::KeyVoice, true);
        QTRY_VERIFY(window().Recording);
    }

    /// The real question: a signal closes it, and its "no answer" does not keep the program.
    void aSignalWhileTheUserIsAsked()
    {
        Program program;
        mevo::askHook = nullptr;
        QElapsedTimer elapsed;
        QTimer whenAsked;
        QObject::connect(&whenAsked, &QTimer::timeout, [&] {
            if (qobject_cast<QMessageBox *>(QApplication::activeModalWidget()) != nullptr) {
                whenAsked.stop();
                elapsed.start();
                leave("signal"_s);
            }
        });
        whenAsked.start(1);
        QCOMPARE(run(
                     program, [] { window().on_exitAppAction(); }, [] { return false; }),
                 0);
        verifyGone(program, elapsed);
        QVERIFY(program.fake.startupEntry->names.isEmpty());
    }

    /// A press that the reader has seen, but the session has not, when the receiver goes.
    void aPressOnItsWayAtTheRemoval()
    {
        Started program;
        program.settle();
        program.fake.deviceNotifier->report(Change::Removal);
        const int reads = program.fake.hid->reads;
        program.key(mevo::KeyVoice, true);
        while (program.fake.hid->reads < reads + 2) { // the reader is back from passing it on
            QThread::yieldCurrentThread();
        }
        program.settle();
        QVERIFY(!window().deviceOpen() && !window().Recording && !window().MicWinShown);
    }
};

QTEST_MAIN(TestWindowWaits)
#include "tst_window_waits.moc"
