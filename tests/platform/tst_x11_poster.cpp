#include "platform/linux/ScreenLock.h"
#include "platform/linux/X11LiftedModifiers.h"
#include "platform/linux/X11Ping.h"
#include "platform/linux/X11Poster.h"
#include "support/Rows.h"

#include <QtTest>

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XInput.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>

#include <poll.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <atomic>
#include <memory>
#include <mutex>
#include <thread>
#include <vector>

namespace {

/// A program with one window, on a connection and a thread of its own, that can be made to hang.
class Program
{
public:
    enum class Kind {
        AnswersPings,
        Busy, ///< answers none, and when it hangs it computes without a pause
        Java, ///< a window of Java's own widgets
    };

    explicit Program(Kind kind = Kind::AnswersPings)
        : m_kind(kind)
        , m_thread([this] { run(); })
    {
    }
    ~Program()
    {
        m_end = true;
        m_thread.join();
    }

    /// Waits until the window has the keyboard; 0 when it does not get it.
    mevo::WindowId window() const
    {
        return QTest::qWaitFor([this] { return m_ready.load(); }, 30000) ? m_window.load() : 0;
    }
    QString text() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_text;
    }

    std::atomic<bool> hangs{false};
    std::atomic<int> pings{0};           ///< answered
    std::atomic<int> hangsAfterKeys{-1}; ///< when the next one comes after that many; -1 for never

private:
    void run()
    {
        Display *display = XOpenDisplay(nullptr);
        const Window window =
            XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 300, 200, 0, 0, 0);
        Atom ping = XInternAtom(display, "_NET_WM_PING", False);
        if (m_kind == Kind::Busy) {
            tellProcess(display, window);
        } else {
            XSetWMProtocols(display, window, &ping, 1);
        }
        if (m_kind == Kind::Java) {
            QByteArray name("sun-awt-X11-XFramePeer");
            XClassHint hint{name.data(), name.data()};
            XSetClassHint(display, window, &hint);
        }
        XSelectInput(display, window, KeyPressMask | FocusChangeMask);
        XMapRaised(display, window);
        m_window = window;
        while (!m_end) {
            if (hangs) {
                hang();
            }
            if (XPending(display) == 0) {
                pollfd wait{ConnectionNumber(display), POLLIN, 0};
                poll(&wait, 1, m_kind == Kind::Busy ? 200 : 2); // it sleeps, as can be seen
                continue;
            }
            XEvent event;
            XNextEvent(display, &event);
            take(display, event, ping);
        }
        XCloseDisplay(display);
    }

    void hang() const
    {
        while (hangs && !m_end) {
            if (m_kind != Kind::Busy) {
                std::this_thread::sleep_for(std::chrono::milliseconds(2));
            }
        }
    }

    /// The thread stands for the main one of a process.
    static void tellProcess(Display *display, Window window)
    {
        const QByteArray machine = QSysInfo::machineHostName().toUtf8();
        XChangeProperty(display, window, XA_WM_CLIENT_MACHINE, XA_STRING, 8, PropModeReplace,
                        reinterpret_cast<const unsigned char *>(machine.constData()), machine.size());
        const long thread = ::syscall(SYS_gettid);
        XChangeProperty(display, window, XInternAtom(display, "_NET_WM_PID", False), XA_CARDINAL, 32,
                        PropModeReplace, reinterpret_cast<const unsigned char *>(&thread), 1);
    }

    void take(Display *display, XEvent &event, Atom ping)
    {
        if (event.type == MappingNotify) {
            XRefreshKeyboardMapping(&event.xmapping);
        } else if (event.type == FocusIn) {
            m_ready = true;
        } else if (event.type == ClientMessage && Atom(event.xclient.data.l[0]) == ping) {
            event.xclient.window = DefaultRootWindow(display);
            XSendEvent(display, event.xclient.window, False,
                       SubstructureNotifyMask | SubstructureRedirectMask, &event);
            XFlush(display);
            ++pings;
        } else if (event.type == KeyPress) {
            hangs = hangs || m_text.size() == hangsAfterKeys;
            hang();
            unsigned taken = 0;
            KeySym symbol = 0;
            XkbLookupKeySym(display, KeyCode(event.xkey.keycode), event.xkey.state, &taken, &symbol);
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_text += QChar(ushort(symbol & 0xffff));
        }
    }

    const Kind m_kind;
    std::atomic<mevo::WindowId> m_window{0};
    std::atomic<bool> m_ready{false};
    std::atomic<bool> m_end{false};
    mutable std::mutex m_mutex;
    QString m_text;
    std::thread m_thread;
};

/// Different characters, those of each `from` others.
QString distinct(int count, int from = 0)
{
    QString text;
    for (int i = 0; i < count; ++i) {
        text += QChar(0x4e00 + from + i);
    }
    return text;
}

/// What keys of the whole map yield.
std::vector<KeySym> symbols(Display *display)
{
    int first = 0, last = 0, width = 0;
    XDisplayKeycodes(display, &first, &last);
    KeySym *map = XGetKeyboardMapping(display, KeyCode(first), last - first + 1, &width);
    std::vector<KeySym> found;
    std::copy_if(map, map + width * (last - first + 1), std::back_inserter(found),
                 [](KeySym symbol) { return symbol != NoSymbol; });
    XFree(map);
    return found;
}

bool setLayout(const char *layout)
{
    return QProcess::execute("setxkbmap"_s, {QString::fromLatin1(layout)}) == 0;
}

} // namespace

Q_DECLARE_METATYPE(Program::Kind)
Q_DECLARE_METATYPE(std::vector<Program::Kind>)

class TestX11Poster : public QObject
{
    Q_OBJECT

    const mevo::ScreenLock m_lock;

private Q_SLOTS:
    /// A program that hangs for a moment, or for longer than it is waited for, in the middle of a text. What
    /// it was sent stands in its text when it wakes, and what is typed next is what is meant.
    void aProgramThatHangsInTheMiddle_data()
    {
        const Rows<int, bool> row; // limitMs, complete
        row("for a moment", 30000, true);
        row("for long", 300, false);
    }

    void aProgramThatHangsInTheMiddle()
    {
        const auto [limitMs, complete] = rowOf<int, bool>();
        mevo::X11Poster poster(m_lock);
        QVERIFY(poster.isUsable());
        poster.waits().takenLimitMs = limitMs;
        Program program;
        QVERIFY(program.window() != 0);
        const QString first = distinct(500), next = first.mid(100, 300);
        program.hangsAfterKeys = 5;
        std::atomic<bool> posted{false};
        std::thread wakes([&program, &posted, complete = complete] {
            QElapsedTimer hanging;
            while (complete && !posted && !(hanging.isValid() && hanging.elapsed() > 2500)) {
                if (program.hangs && !hanging.isValid()) {
                    hanging.start();
                }
                std::this_thread::sleep_for(std::chrono::milliseconds(5));
            }
            program.hangs = program.hangs && !complete;
        });
        const mevo::PostResult result = poster.post(program.window(), first);
        posted = true;
        wakes.join();
        QCOMPARE(result.complete, complete);
        QVERIFY(result.stop == (complete ? mevo::PostStop::AtEnd : mevo::PostStop::Hung));
        QTRY_VERIFY_WITH_TIMEOUT(complete || program.hangs, 30000);
        QCOMPARE(poster.rest(), complete); // the keys are left while they are waited for
        program.hangsAfterKeys = -1;
        program.hangs = false;
        poster.waits().takenLimitMs = 30000;
        const mevo::PostResult after = poster.post(program.window(), next);
        QVERIFY(after.complete);
        const QString text = program.text();
        QVERIFY(text.endsWith(next));
        QCOMPARE(text.chopped(next.size()), first.left(text.size() - next.size()));
        QCOMPARE(text.size() == first.size() + next.size(), complete);
        QVERIFY(poster.rest());
    }

    /// Programs that hang with keys on their way, while as much is typed into another one as takes all keys
    /// there are. When they wake they take what they were sent, also when that has been waited for no longer
    /// because we have ended.
    void whatIsTypedBesideProgramsThatHang_data()
    {
        using Kind = Program::Kind;
        const Rows<std::vector<Kind>, Kind, bool> row; // hanging, beside, ends
        const std::vector<Kind> one{Kind::AnswersPings}, two{Kind::AnswersPings, Kind::AnswersPings};
        row("one", one, Kind::AnswersPings, false);
        row("two", two, Kind::AnswersPings, false);
        row("one that answers no pings", std::vector{Kind::Busy}, Kind::AnswersPings, false);
        row("beside a program of Java's", one, Kind::Java, false);
        row("a program of Java's", std::vector{Kind::Java}, Kind::AnswersPings, false);
        row("and we end", two, Kind::AnswersPings, true);
    }

    void whatIsTypedBesideProgramsThatHang()
    {
        using Kind = Program::Kind;
        const auto [hanging, beside, ends] = rowOf<std::vector<Kind>, Kind, bool>();
        const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr), XCloseDisplay);
        const std::vector<KeySym> before = symbols(display.get());
        auto poster = std::make_unique<mevo::X11Poster>(m_lock);
        poster->waits().takenLimitMs = 300;
        std::vector<std::unique_ptr<Program>> programs;
        std::vector<QString> sent;
        for (const Kind kind : hanging) {
            programs.push_back(std::make_unique<Program>(kind));
            Program &program = *programs.back();
            program.hangsAfterKeys = 0;
            sent.push_back(distinct(12, 5000 + 100 * int(sent.size())));
            QVERIFY(program.window() != 0);
            QCOMPARE(poster->post(program.window(), sent.back()).complete, kind == Kind::Busy);
            QVERIFY(program.hangs);
        }
        Program other(beside);
        QVERIFY(other.window() != 0);
        poster->waits().takenLimitMs = 30000;
        const QString text = distinct(300);
        QVERIFY(poster->post(other.window(), text).complete);
        QCOMPARE(other.text(), text);
        QVERIFY(!poster->rest());
        if (ends) {
            poster.reset();
        }
        for (std::size_t i = 0; i < programs.size(); ++i) {
            programs[i]->hangsAfterKeys = -1;
            programs[i]->hangs = false;
            QTRY_COMPARE_WITH_TIMEOUT(programs[i]->text(), sent[i], 30000);
        }
        if (ends) {
            QVERIFY(symbols(display.get()) != before);
            poster = std::make_unique<mevo::X11Poster>(m_lock);
        }
        QTRY_VERIFY_WITH_TIMEOUT(poster->rest(), 30000);
        QVERIFY(symbols(display.get()) == before);
    }

    /// A layout is set while keys are on their way to a program, or bound and yet to be sent. What is told to
    /// have arrived has, and all the rest does when it is typed again.
    void aLayoutIsSetMeanwhile_data() { flagRows("on their way", "bound"); }
    void aLayoutIsSetMeanwhile()
    {
        const auto [onTheirWay] = rowOf<bool>();
        const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr), XCloseDisplay);
        mevo::X11Poster poster(m_lock);
        poster.waits().takenLimitMs = 30000;
        Program program;
        QVERIFY(program.window() != 0);
        const QString text = distinct(500);
        program.hangsAfterKeys = onTheirWay ? 200 : -1;
        if (!onTheirWay) {
            QCOMPARE(XGrabKeyboard(display.get(), DefaultRootWindow(display.get()), False, GrabModeAsync,
                                   GrabModeAsync, CurrentTime),
                     GrabSuccess);
        }
        std::atomic<bool> set{false};
        std::thread sets([&, onTheirWay = onTheirWay] {
            const auto isTime = [&] {
                const std::vector<KeySym> all = symbols(display.get());
                return onTheirWay ? program.hangs.load()
                                  : std::find(all.begin(), all.end(), 0x1004e00) != all.end();
            };
            QElapsedTimer waiting;
            waiting.start();
            while (!isTime() && waiting.elapsed() < 30000) {
                std::this_thread::yield();
            }
            set = setLayout("de");
            program.hangsAfterKeys = -1;
            program.hangs = false;
            XUngrabKeyboard(display.get(), CurrentTime);
            XFlush(display.get());
        });
        const mevo::PostResult result = poster.post(program.window(), text);
        sets.join();
        QVERIFY(set);
        QCOMPARE(result.complete, !onTheirWay);
        QVERIFY(result.stop == (onTheirWay ? mevo::PostStop::KeyboardChanged : mevo::PostStop::AtEnd));
        const QString arrived = program.text();
        QCOMPARE(arrived.left(result.posted), text.left(result.posted));
        QVERIFY(result.posted > 0);
        QVERIFY(poster.post(program.window(), text.mid(result.posted)).complete);
        QCOMPARE(program.text().mid(arrived.size()), text.mid(result.posted));
        QVERIFY(setLayout("us"));
        QVERIFY(poster.rest());
    }

    /// A line end goes by the key that the map has for it by then, and with none nothing is typed.
    void lineEndsFollowTheMap()
    {
        const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr), XCloseDisplay);
        const auto keyIs = [&](int keycode, KeySym symbol) {
            XChangeKeyboardMapping(display.get(), keycode, 1, &symbol, 1);
            XSync(display.get(), False);
        };
        constexpr int returnKey = 36, anotherKey = 95;
        mevo::X11Poster poster(m_lock);
        Program program;
        QVERIFY(program.window() != 0);
        QVERIFY(poster.post(program.window(), "甲\n"_s).complete);
        keyIs(returnKey, XK_F30);
        const mevo::PostResult refused = poster.post(program.window(), "乙\n"_s);
        keyIs(anotherKey, XK_Return);
        QVERIFY(poster.post(program.window(), "丙\n"_s).complete);
        QVERIFY(setLayout("us"));
        QCOMPARE(refused.posted, 0);
        QVERIFY(refused.stop == mevo::PostStop::NoKeys);
        QCOMPARE(program.text(), "甲\uff0d丙\uff0d"_s);
        QVERIFY(poster.rest());
    }

    /// A terminal that is printed to without a pause is typed into at once, and when it has been left alone
    /// for long enough nothing is kept up for it.
    void aTerminalThatIsPrintedToWithoutAPause()
    {
        const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr), XCloseDisplay);
        const std::vector<KeySym> before = symbols(display.get());
        mevo::X11Poster poster(m_lock);
        Program program(Program::Kind::Busy);
        QVERIFY(program.window() != 0);
        program.hangs = true;
        QVERIFY(poster.post(program.window(), distinct(12)).complete);
        poster.waits().behindLookMs = 60000;
        QElapsedTimer since;
        since.start();
        QVERIFY(poster.post(program.window(), distinct(12)).complete);
        QVERIFY2(since.elapsed() < 30000, qPrintable(QString::number(since.elapsed())));
        poster.waits().behindLookMs = 100;
        QVERIFY(!poster.rest());
        poster.waits().busyLimitMs = 1;
        QVERIFY(poster.rest());
        QVERIFY(symbols(display.get()) == before);
    }

    /// A program that hung with nearly all keys is well again: the next text goes with all of them, not one
    /// after the other.
    void keysOfAProgramThatIsWellAgain()
    {
        const int keys = [] {
            mevo::X11Connection connection;
            return mevo::X11ScratchKeys(connection).count();
        }();
        QVERIFY(keys > 60);
        mevo::X11Poster poster(m_lock);
        poster.waits().takenLimitMs = 300;
        Program hung;
        hung.hangsAfterKeys = 0;
        QVERIFY(hung.window() != 0);
        const QString first = distinct(keys - 1, 5000);
        QVERIFY(!poster.post(hung.window(), first).complete);
        QVERIFY(hung.hangs);
        hung.hangsAfterKeys = -1;
        hung.hangs = false;
        QTRY_COMPARE_WITH_TIMEOUT(hung.text(), first, 30000);
        Program other;
        QVERIFY(other.window() != 0);
        poster.waits().takenLimitMs = 30000;
        QVERIFY(poster.post(other.window(), distinct(60)).complete);
        QVERIFY2(other.pings < 10, qPrintable(QString::number(other.pings)));
        QVERIFY(poster.rest());
    }

    /// A free key that somebody else binds while ours are bound, or left bound for a program that hangs or
    /// by a crash, stays his; so does one of ours that is his by then.
    void keysOfOthersStay_data()
    {
        const Rows<bool, bool, int> row; // atTheNextStart, crash, key
        row("when ours are unbound", false, false, 1);
        row("at the next start", true, false, 2);
        row("at the next start, one of ours", true, false, 1);
        row("after a crash", true, true, 2);
        row("after a crash, one of ours", true, true, 1);
    }

    void keysOfOthersStay()
    {
        const auto [atTheNextStart, crash, key] = rowOf<bool, bool, int>();
        const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr), XCloseDisplay);
        const std::vector<KeySym> before = symbols(display.get());
        const auto keyIs = [&](int keycode, KeySym symbol) {
            XChangeKeyboardMapping(display.get(), keycode, 1, &symbol, 1);
            XSync(display.get(), False);
        };
        constexpr KeySym ours = 0x1004e00;
        int theirs = 0;
        {
            mevo::X11Connection connection;
            auto keys = std::make_unique<mevo::X11ScratchKeys>(connection);
            theirs = keys->keycode(key);
            QVERIFY(keys->bind({{0, ours}, {1, ours + 1}}));
            if (!atTheNextStart) {
                keyIs(theirs, XK_F30);
            }
            keys->keepAtEnd(atTheNextStart ? std::vector<int>{0, 1} : std::vector<int>());
            if (crash) {
                static mevo::X11ScratchKeys *crashed; // cannot be deleted any more
                crashed = keys.release();
                QVERIFY(crashed != nullptr);
            }
        }
        if (atTheNextStart) {
            QVERIFY(symbols(display.get()) != before);
            keyIs(theirs, XK_F30);
            const auto isUnbound = [&] {
                mevo::X11Connection connection;
                const mevo::X11ScratchKeys next(connection);
                const std::vector<KeySym> all = symbols(display.get());
                return std::find(all.begin(), all.end(), ours) == all.end();
            };
            QTRY_VERIFY(isUnbound());
        }
        QCOMPARE(XkbKeycodeToKeysym(display.get(), KeyCode(theirs), 0, 0), KeySym(XK_F30));
        keyIs(theirs, NoSymbol);
        QVERIFY(symbols(display.get()) == before);
    }

    /// A window that hung and is gone keeps nothing up.
    void aProgramThatHangsAndGoes()
    {
        const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr), XCloseDisplay);
        const std::vector<KeySym> before = symbols(display.get());
        mevo::X11Poster poster(m_lock);
        poster.waits().takenLimitMs = 300;
        Program program;
        program.hangsAfterKeys = 5;
        QVERIFY(program.window() != 0);
        QVERIFY(!poster.post(program.window(), distinct(40)).complete);
        QVERIFY(!poster.rest());
        XDestroyWindow(display.get(), program.window());
        XSync(display.get(), False);
        QVERIFY(poster.rest());
        QVERIFY(symbols(display.get()) == before);
    }

    /// What one program of ours left bound in a crash is unbound, although another one has bound and unbound
    /// keys beside it.
    void twoProgramsOfOurs()
    {
        const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr), XCloseDisplay);
        const std::vector<KeySym> before = symbols(display.get());
        static mevo::X11ScratchKeys *crashed; // cannot be deleted any more
        {
            mevo::X11Connection connection, other;
            crashed = new mevo::X11ScratchKeys(connection);
            QVERIFY(crashed->bind({{0, 0x1004e00}}));
            mevo::X11ScratchKeys beside(other);
            QVERIFY(beside.bind({{0, 0x1004e01}}));
            beside.release();
        }
        QVERIFY(symbols(display.get()) != before);
        const auto isWholeAtTheNextStart = [&] {
            mevo::X11Connection connection;
            const mevo::X11ScratchKeys next(connection);
            return symbols(display.get()) == before;
        };
        QTRY_VERIFY(isWholeAtTheNextStart());
    }

    /// The second keyboard that a crash has left goes at the next start; those of programs that run stay.
    void aKeyboardThatACrashLeft()
    {
        const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr), XCloseDisplay);
        const auto devices = [&] {
            int count = 0;
            XIFreeDeviceInfo(XIQueryDevice(display.get(), XIAllDevices, &count));
            return count;
        };
        const int before = devices();
        static mevo::X11SecondKeyboard *crashed; // cannot be deleted any more
        mevo::X11Connection running;
        auto other = std::make_unique<mevo::X11SecondKeyboard>(running.display());
        const int one = devices() - before;
        {
            const mevo::X11Connection connection;
            crashed = new mevo::X11SecondKeyboard(connection.display());
            QVERIFY(crashed->isUsable());
        }
        QCOMPARE(devices() - before, 2 * one);
        const auto isGoneAtTheNextStart = [&] {
            const mevo::X11Poster next(m_lock);
            return devices() - before == one;
        };
        QTRY_VERIFY(isGoneAtTheNextStart());
        other.reset();
        QCOMPARE(devices(), before);
    }

    /// A modifier that the user lets go while it is lifted does not stay down.
    void liftedModifiers_data()
    {
        const Rows<bool, bool> row; // byHand, letGo
        row("held", true, false);
        row("let go meanwhile", true, true);
        row("held by a program", false, false);
    }

    void liftedModifiers()
    {
        const auto [byHand, letGo] = rowOf<bool, bool>();
        const std::unique_ptr<Display, int (*)(Display *)> display(XOpenDisplay(nullptr), XCloseDisplay);
        int count = 0;
        XIDeviceInfo *const devices = XIQueryDevice(display.get(), XIAllDevices, &count);
        const auto *const keyboard = std::find_if(devices, devices + count, [](const XIDeviceInfo &device) {
            return device.use == XISlaveKeyboard && !QByteArray(device.name).contains("XTEST");
        });
        QVERIFY(keyboard != devices + count);
        XDevice *const hand = XOpenDevice(display.get(), XID(keyboard->deviceid));
        XIFreeDeviceInfo(devices);
        const unsigned shift = XKeysymToKeycode(display.get(), XK_Shift_L);
        const auto press = [&, byHand = byHand](bool down) {
            byHand ? XTestFakeDeviceKeyEvent(display.get(), hand, shift, down, nullptr, 0, CurrentTime)
                   : XTestFakeKeyEvent(display.get(), shift, down, CurrentTime);
        };
        const auto modifiers = [&] {
            XkbStateRec state{};
            XkbGetState(display.get(), XkbUseCoreKbd, &state);
            return int(state.base_mods);
        };
        press(true);
        QCOMPARE(modifiers(), ShiftMask);
        {
            const mevo::X11LiftedModifiers lifted(display.get());
            QCOMPARE(modifiers(), 0);
            if (letGo) {
                press(false);
            }
        }
        QCOMPARE(modifiers(), letGo ? 0 : ShiftMask);
        press(false);
        QCOMPARE(modifiers(), 0);
        XCloseDevice(display.get(), hand);
    }

    /// The end of the program waits for nobody for long.
    void theEndIsNotHeldUp()
    {
        mevo::X11Poster poster(m_lock);
        poster.waits().takenLimitMs = 60000;
        Program program;
        program.hangsAfterKeys = 5;
        QVERIFY(program.window() != 0);
        QElapsedTimer since;
        std::thread ends([&] {
            while (!program.hangs) {
                std::this_thread::yield();
            }
            since.start();
            poster.waits().endSoon();
        });
        const mevo::PostResult result = poster.post(program.window(), distinct(40));
        ends.join();
        QVERIFY(result.stop == mevo::PostStop::Hung);
        QVERIFY2(since.elapsed() < 10000, qPrintable(QString::number(since.elapsed())));
    }

    /// An answer that has come counts, however late we get to look.
    void anAnswerThatIsThereIsTaken()
    {
        mevo::X11Connection connection;
        mevo::X11Ping ping(connection);
        Program program;
        QVERIFY(program.window() != 0);
        const std::unique_ptr<Display, int (*)(Display *)> listener(XOpenDisplay(nullptr), XCloseDisplay);
        XSelectInput(listener.get(), DefaultRootWindow(listener.get()), SubstructureNotifyMask);
        XSync(listener.get(), False);
        ping.listen(true);
        ping.send(program.window());
        XEvent event{};
        QVERIFY(QTest::qWaitFor(
            [&] { return XCheckTypedEvent(listener.get(), ClientMessage, &event) == True; }, 30000));
        QVERIFY(ping.await(0) == mevo::X11Ping::Answer::Given);
        program.hangs = true;
        ping.send(program.window());
        QVERIFY(ping.await(50) == mevo::X11Ping::Answer::Silence);
    }
};

QTEST_MAIN(TestX11Poster)
#include "tst_x11_poster.moc"
