#include "desk/TargetWindow.h"
#include "platform/PostText.h"
#include "platform/linux/X11Connection.h"
#include "platform/linux/X11ScratchKeys.h"
#include "platform/linux/X11WindowSystem.h"
#include "support/Rows.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QProcess>
#include <QtTest>

#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xlib-xcb.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XInput2.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>
#include <xcb/xcbext.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <tuple>

namespace {

constexpr int readMs = 8000;

const QString mixedText = "今天天气很好，我们去公园。Hello, World! (a<b) {c} \"d\" 'e' ~`@#$%^&*_+-=|\\;:/?.>"
                          "Ünïcödé ¡Ñ! 【标题】《书名》——…… 😀𠀀 完"_s;

QString longText()
{
    QString text;
    for (int i = 0; i < 600; ++i) {
        text += QChar(0x4e00 + i * 7 % 3000);
    }
    return text;
}

} // namespace

class TestX11Typing : public QObject
{
    Q_OBJECT

    using Target = std::unique_ptr<mevo::lab::TargetWindow>;

    mevo::X11WindowSystem windows;
    Display *display = XOpenDisplay(nullptr);

    static Target open(const char *kind) { return mevo::lab::TargetWindow::start(QLatin1String(kind)); }

    int masterKeyboards()
    {
        int count = 0;
        XIDeviceInfo *const devices = XIQueryDevice(display, XIAllMasterDevices, &count);
        const auto keyboards = std::count_if(devices, devices + count, [](const XIDeviceInfo &device) {
            return device.use == XIMasterKeyboard;
        });
        XIFreeDeviceInfo(devices);
        return int(keyboards);
    }

    /// The request of a pager.
    void toRoot(const char *message, Window window, long value)
    {
        XEvent event{};
        event.xclient.type = ClientMessage;
        event.xclient.window = window;
        event.xclient.message_type = XInternAtom(display, message, False);
        event.xclient.format = 32;
        event.xclient.data.l[0] = value;
        event.xclient.data.l[1] = 2;
        XSendEvent(display, DefaultRootWindow(display), False,
                   SubstructureNotifyMask | SubstructureRedirectMask, &event);
        XFlush(display);
    }

    /// Stops a program where it does not hold the whole X server, as toolkits do for moments when they start.
    bool stop(pid_t program)
    {
        xcb_connection_t *server = XGetXCBConnection(display);
        return QTest::qWaitFor(
            [&] {
                ::kill(program, SIGSTOP);
                const unsigned int request = xcb_get_input_focus(server).sequence;
                xcb_flush(server);
                void *reply = nullptr;
                const bool answers = QTest::qWaitFor(
                    [&] { return xcb_poll_for_reply(server, request, &reply, nullptr) == 1; }, 2000);
                free(reply);
                if (!answers) {
                    ::kill(program, SIGCONT);
                    XSync(display, False);
                }
                return answers;
            },
            30000);
    }

    /// Whether keys are bound at present.
    bool isBound()
    {
        return XGetSelectionOwner(display, XInternAtom(display, "_MEVO_SCRATCH_OWNER", False)) != 0;
    }

    /// Of the whole keyboard map.
    std::vector<KeySym> symbols()
    {
        int first = 0, last = 0, width = 0;
        XDisplayKeycodes(display, &first, &last);
        KeySym *map = XGetKeyboardMapping(display, static_cast<KeyCode>(first), last - first + 1, &width);
        std::vector<KeySym> copy(map, map + width * (last - first + 1));
        XFree(map);
        return copy;
    }

    int mapState(mevo::WindowId window)
    {
        XWindowAttributes attributes{};
        XGetWindowAttributes(display, window, &attributes);
        return attributes.map_state;
    }

private Q_SLOTS:
    void initTestCase()
    {
        QVERIFY(display != nullptr);
        QVERIFY(windows.canPostText());
    }

    void cleanupTestCase() { XCloseDisplay(display); }

    void textArrivesWhole_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("mixed") << mixedText;
        QTest::newRow("600 characters") << longText();
        QTest::newRow("repeated") << "哈哈哈aa啊啊\tbb"_s;
    }

    void textArrivesWhole()
    {
        QFETCH(QString, text);
        for (const QString &kind : mevo::lab::TargetWindow::kinds()) {
            const Target target = mevo::lab::TargetWindow::start(kind);
            QVERIFY2(target, qPrintable(kind));
            const mevo::PostResult result = postText(windows, windows.focusedWindow(), text);
            QVERIFY2(result.complete, qPrintable(kind));
            QCOMPARE(result.posted, text.size());
            QCOMPARE(target->text(text.size(), readMs), text);
        }
    }

    /// A window that answers pings is asked for its answer and not waited for: all of them answer.
    void theFirstTextIsWaitedForNoLonger()
    {
        for (const QString &kind : mevo::lab::TargetWindow::kinds()) {
            const Target target = mevo::lab::TargetWindow::start(kind);
            QVERIFY2(target, qPrintable(kind));
            QElapsedTimer clock;
            clock.start();
            QVERIFY2(postText(windows, windows.focusedWindow(), "你好"_s).complete, qPrintable(kind));
            QVERIFY2(clock.elapsed() < 1500, qPrintable("%1 %2 ms"_s.arg(kind).arg(clock.elapsed())));
        }
    }

    void lineEndsAreReturns()
    {
        const Target target = open("mousepad");
        QVERIFY(target);
        QVERIFY(postText(windows, windows.focusedWindow(), "一\r\n二\n三\r四\x01五"_s).complete);
        QCOMPARE(target->text("一\n二\n三\n四五"_s.size(), readMs), "一\n二\n三\n四五"_s);
    }

    /// More characters than there are keys, for a window of each kind that has not the focus, with Caps Lock.
    void textGoesToItsWindowWhenTheFocusHasMoved()
    {
        const QString text = "这段话属于第一个窗口 abc"_s + longText().left(100);
        for (const QString &kind : mevo::lab::TargetWindow::kinds()) {
            const Target first = mevo::lab::TargetWindow::start(kind);
            QVERIFY2(first, qPrintable(kind));
            const mevo::WindowId saved = windows.focusedWindow();
            const Target second = open("xterm");
            QVERIFY(second);
            XkbLockModifiers(display, XkbUseCoreKbd, LockMask, LockMask);
            XSync(display, False);
            const mevo::PostResult unfocused = postText(windows, saved, text);
            XkbLockModifiers(display, XkbUseCoreKbd, LockMask, 0);
            XSync(display, False);
            QVERIFY2(unfocused.complete && second->hasFocus(), qPrintable(kind));
            QCOMPARE(masterKeyboards(), 1); // beside another one Chromium takes no keys of the user's
            QVERIFY(postText(windows, windows.focusedWindow(), "第二个"_s).complete);
            QCOMPARE(second->text(3, readMs), "第二个"_s);
            QCOMPARE(first->text(text.size(), readMs), text);
        }
    }

    /// Another program's key strokes come before, between or behind ours; none of either is lost or changed.
    void whatIsTypedMeanwhileIsWhole()
    {
        const QString text = longText();
        for (const QString &kind : mevo::lab::TargetWindow::kinds()) {
            const Target target = mevo::lab::TargetWindow::start(kind);
            QVERIFY2(target, qPrintable(kind));
            bool done = false, complete = false;
            windows.postText(windows.focusedWindow(), text, [&](const mevo::PostResult &result) {
                done = true;
                complete = result.complete;
            });
            int struck = 0;
            QVERIFY2(
                QTest::qWaitFor(
                    [&] {
                        if (!done) {
                            XTestFakeKeyEvent(display, XKeysymToKeycode(display, XK_z), True, CurrentTime);
                            XTestFakeKeyEvent(display, XKeysymToKeycode(display, XK_z), False, CurrentTime);
                            XSync(display, False);
                            ++struck;
                        }
                        return done;
                    },
                    60000),
                qPrintable(kind));
            QVERIFY2(complete && struck > 1, qPrintable(kind));
            QString seen = target->text(text.size() + struck, readMs);
            QCOMPARE(seen.count(QLatin1Char('z')), struck);
            QCOMPARE(seen.remove(QLatin1Char('z')), text);
        }
    }

    void queuedTextsKeepTheirOrder()
    {
        const Target target = open("xterm");
        QVERIFY(target);
        QString expected;
        for (int i = 0; i < 20; ++i) {
            const QString text = "第%1句。"_s.arg(i);
            expected += text;
            windows.postText(windows.focusedWindow(), text, {});
        }
        QCOMPARE(target->text(expected.size(), readMs), expected);
    }

    void aWindowThatIsGoneTakesNothing()
    {
        const Target target = open("xterm");
        QVERIFY(target);
        const mevo::WindowId window = windows.focusedWindow();
        QVERIFY(!windows.keysGoNowhere());
        target->stop();
        QTRY_VERIFY(!windows.isWindow(window));
        const mevo::PostResult result = postText(windows, window, "没有人"_s);
        QVERIFY(!result.complete);
        QCOMPARE(result.posted, 0);
        // The window manager has given the focus to a window of its own.
        QTRY_COMPARE(windows.focusedWindow(), mevo::WindowId(0));
        QTRY_VERIFY(windows.keysGoNowhere());
    }

    /// The desktop takes keys, and makes a search or nothing of them.
    void theDesktopIsNoWindowToTypeInto()
    {
        const Target target = open("xterm");
        QVERIFY(target);
        QVERIFY(windows.focusedWindow() != 0 && !windows.keysGoNowhere());
        const Atom desktop = XInternAtom(display, "_NET_WM_WINDOW_TYPE_DESKTOP", False);
        XChangeProperty(display, target->windowId(), XInternAtom(display, "_NET_WM_WINDOW_TYPE", False),
                        XA_ATOM, 32, PropModeReplace, reinterpret_cast<const unsigned char *>(&desktop), 1);
        XSync(display, False);
        QCOMPARE(windows.focusedWindow(), mevo::WindowId(0));
        QVERIFY(windows.keysGoNowhere());
    }

    /// What cannot be typed is said to be so, and does not go into the window that an earlier text went to
    /// without the focus.
    void aWindowOutOfSightTakesNothing_data() { flagRows("on another desktop", "minimised"); }
    void aWindowOutOfSightTakesNothing()
    {
        const auto [otherDesktop] = rowOf<bool>();
        const Target earlier = open("xterm");
        QVERIFY(earlier);
        const mevo::WindowId earlierWindow = windows.focusedWindow();
        const Target hidden = open("xterm");
        QVERIFY(hidden);
        const mevo::WindowId hiddenWindow = windows.focusedWindow();
        QVERIFY(postText(windows, earlierWindow, "先"_s).complete);

        if (otherDesktop) {
            toRoot("_NET_WM_DESKTOP", hidden->windowId(), 1);
        } else {
            XIconifyWindow(display, hidden->windowId(), DefaultScreen(display));
        }
        QTRY_VERIFY(mapState(hiddenWindow) != IsViewable);
        const mevo::PostResult result = postText(windows, hiddenWindow, "后"_s);
        QVERIFY(!result.complete);
        QCOMPARE(result.posted, 0);
        QCOMPARE(result.stop, mevo::PostStop::Hidden);
        QVERIFY(earlier->focus());
        QVERIFY(postText(windows, earlierWindow, "完"_s).complete);
        QCOMPARE(earlier->text(2, readMs), "先完"_s);
        QVERIFY(hidden->focus() || otherDesktop);
        QCOMPARE(hidden->peek(), QString());
    }

    void aProgramThatHangsTakesNothing()
    {
        for (const char *kind : {"mousepad", "featherpad", "xterm"}) { // which answers no pings
            const Target target = open(kind);
            QVERIFY2(target, kind);
            const mevo::WindowId window = windows.focusedWindow();
            QVERIFY2(stop(pid_t(target->processId())), kind);
            const mevo::PostResult result = postText(windows, window, "没有人"_s);
            ::kill(pid_t(target->processId()), SIGCONT);
            QVERIFY2(!result.complete, kind);
            QCOMPARE(result.posted, 0);
            QCOMPARE(result.stop, mevo::PostStop::Hung);
            QVERIFY2(postText(windows, window, "醒了"_s).complete, kind);
            QCOMPARE(target->text(2, readMs), "醒了"_s);
        }
    }

    /// Whoever ends keeps what was not begun, and it is not typed as well.
    void whatWaitsAtTheEndStaysUntyped()
    {
        const Target target = open("xterm");
        QVERIFY(target);
        const mevo::WindowId window = windows.focusedWindow();
        const Target hanging = open("mousepad");
        QVERIFY(hanging);
        const mevo::WindowId hangingWindow = windows.focusedWindow();
        QVERIFY(stop(pid_t(hanging->processId())));
        {
            mevo::X11WindowSystem ending;
            ending.postText(hangingWindow, "没有人"_s, {});
            ending.postText(window, "不"_s, {});
        }
        ::kill(pid_t(hanging->processId()), SIGCONT);
        QVERIFY(postText(windows, window, "完"_s).complete);
        QCOMPARE(target->text(1, readMs), "完"_s);
    }

    /// A menu that is open for a moment is waited for; a keyboard that nobody gives back is not typed on.
    void aGrabbedKeyboardIsWaitedFor()
    {
        const Target target = open("xterm");
        QVERIFY(target);
        const mevo::WindowId window = windows.focusedWindow();
        const auto grab = [&] {
            return XGrabKeyboard(display, DefaultRootWindow(display), False, GrabModeAsync, GrabModeAsync,
                                 CurrentTime) == GrabSuccess;
        };
        QVERIFY(grab());
        QTimer::singleShot(300, qApp, [this] {
            XUngrabKeyboard(display, CurrentTime);
            XFlush(display);
        });
        QVERIFY(postText(windows, window, "等"_s).complete);
        QVERIFY(grab());
        const mevo::PostResult result = postText(windows, window, "不"_s);
        XUngrabKeyboard(display, CurrentTime);
        XFlush(display);
        QCOMPARE(result.stop, mevo::PostStop::KeyboardGrabbed);
        QCOMPARE(result.posted, 0);
        QVERIFY(postText(windows, window, "完"_s).complete);
        QCOMPARE(target->text(2, readMs), "等完"_s);
    }

    /// A screen saver of the desktop says that it is on, and later dies without a word.
    void aLockedScreenIsNotTypedOn()
    {
        const Target target = open("xterm");
        QVERIFY(target);
        const mevo::WindowId window = windows.focusedWindow();
        {
            QDBusConnection saver = QDBusConnection::connectToBus(QDBusConnection::SessionBus, "saver"_s);
            QDBusMessage signal = QDBusMessage::createSignal("/org/gnome/ScreenSaver"_s,
                                                             "org.gnome.ScreenSaver"_s, "ActiveChanged"_s);
            signal << true;
            QVERIFY(saver.send(signal));
            QTRY_COMPARE(postText(windows, window, "锁"_s).stop, mevo::PostStop::ScreenLocked);
            QDBusConnection::disconnectFromBus("saver"_s);
        }
        QTRY_VERIFY(postText(windows, window, "开"_s).complete);
        QVERIFY(target->text(1, readMs).endsWith("开"_s));
        QVERIFY(target->peek().count("锁"_s) <= 1);
    }

    void theKeyboardMapIsLeftAsItWas()
    {
        QTRY_VERIFY_WITH_TIMEOUT(!isBound(), 20000);
        const std::vector<KeySym> before = symbols();
        const Target target = open("xterm");
        QVERIFY(target);
        for (int i = 0; i < 30; ++i) {
            QVERIFY(postText(windows, windows.focusedWindow(), "甲乙丙%1"_s.arg(i)).complete);
        }
        QVERIFY(postText(windows, windows.focusedWindow(), longText().left(150)).complete);
        QVERIFY(symbols() != before);
        QTRY_VERIFY_WITH_TIMEOUT(!isBound(), 20000);
        QVERIFY(symbols() == before);
    }

    /// A connection that ends takes nothing down; whoever binds keys next does.
    void whatACrashLeftIsUnbound()
    {
        QTRY_VERIFY_WITH_TIMEOUT(!isBound(), 20000);
        const std::vector<KeySym> before = symbols();
        static mevo::X11ScratchKeys *crashed; // cannot be deleted any more
        {
            mevo::X11Connection connection;
            crashed = new mevo::X11ScratchKeys(connection);
            std::vector<mevo::ScratchSlots::Binding> all;
            for (int slot = 0; slot < crashed->count(); ++slot) {
                all.push_back({slot, mevo::KeySymbol(0x1004e00 + slot)});
            }
            QVERIFY(all.size() > 100);
            QVERIFY(crashed->bind(all));
        }
        QVERIFY(symbols() != before);
        QTRY_VERIFY(!isBound());
        mevo::X11Connection connection;
        const mevo::X11ScratchKeys next(connection);
        QVERIFY(symbols() == before);
        QCOMPARE(next.count(), crashed->count());
    }

    /// What the user's keyboard is set to at the moment changes nothing, and is left as it was.
    void locksAndHeldKeysChangeNothing_data()
    {
        const Rows<unsigned, int, unsigned> row; // locked, held, group
        row("Caps Lock", unsigned(LockMask), 0, 0U);
        row("Caps Lock and Num Lock", unsigned(LockMask | Mod2Mask), 0, 0U);
        row("AltGr locked", unsigned(Mod5Mask), 0, 0U);
        row("Shift held", 0U, int(XK_Shift_L), 0U);
        row("AltGr held", 0U, int(XK_ISO_Level3_Shift), 0U);
        row("a group that the map has no more", 0U, 0, 2U);
    }

    void locksAndHeldKeysChangeNothing()
    {
        const auto [locked, held, group] = rowOf<unsigned, int, unsigned>();
        const auto hold = [&, held = held](Bool down) {
            if (held != 0) {
                XTestFakeKeyEvent(display, XKeysymToKeycode(display, KeySym(held)), down, CurrentTime);
                XFlush(display);
            }
        };
        const auto state = [this] {
            XkbStateRec now{};
            XkbGetState(display, XkbUseCoreKbd, &now);
            return std::make_tuple(unsigned(now.locked_mods), unsigned(now.base_mods),
                                   unsigned(now.locked_group));
        };
        const QString manyLetters = "hello World你 "_s + longText().left(100);
        for (const QString &text : {"hello World你"_s, manyLetters}) {
            for (const QString &kind : mevo::lab::TargetWindow::kinds()) {
                const Target target = mevo::lab::TargetWindow::start(kind);
                QVERIFY2(target, qPrintable(kind));
                XkbLockModifiers(display, XkbUseCoreKbd, 0xff, locked);
                XkbLockGroup(display, XkbUseCoreKbd, group);
                hold(True);
                const auto before = state();
                const mevo::PostResult result = postText(windows, windows.focusedWindow(), text);
                const auto after = state();
                hold(False);
                XkbLockModifiers(display, XkbUseCoreKbd, 0xff, 0);
                XkbLockGroup(display, XkbUseCoreKbd, 0);
                XSync(display, False);
                QVERIFY2(result.complete, qPrintable(kind));
                QVERIFY2(before == after, qPrintable(kind));
                const QString seen = target->text(text.size(), readMs);
                QVERIFY2(seen == text, qPrintable(kind + QLatin1Char(' ') + seen));
            }
        }
    }

    /// Another program sets the keyboard map anew while keys are bound, as a desktop does when a keyboard is
    /// plugged in.
    void aMapThatSomebodyHasSetIsTypedOn()
    {
        const Target target = open("xterm");
        QVERIFY(target);
        QVERIFY(postText(windows, windows.focusedWindow(), "先甲乙"_s).complete);
        QCOMPARE(QProcess::execute("setxkbmap"_s, {"us,de"_s}), 0);
        QVERIFY(postText(windows, windows.focusedWindow(), "后甲乙"_s).complete);
        QCOMPARE(QProcess::execute("setxkbmap"_s, {"us"_s}), 0);
        QVERIFY(postText(windows, windows.focusedWindow(), "完"_s).complete);
        QCOMPARE(target->text(7, readMs), "先甲乙后甲乙完"_s);
    }

    /// A second layout that is in force is none of a text's business.
    void aSecondLayoutChangesNothing()
    {
        QCOMPARE(QProcess::execute("setxkbmap"_s, {"us,ru"_s}), 0);
        XkbLockGroup(display, XkbUseCoreKbd, 1);
        XSync(display, False);
        QString seen;
        const QString text = "layout two, 第二 "_s + longText().left(60);
        {
            const Target target = open("xterm");
            QVERIFY(target);
            QVERIFY(postText(windows, windows.focusedWindow(), text).complete);
            seen = target->text(text.size(), readMs);
        }
        XkbStateRec state{};
        XkbGetState(display, XkbUseCoreKbd, &state);
        QCOMPARE(QProcess::execute("setxkbmap"_s, {"us"_s}), 0);
        QCOMPARE(seen, text);
        QCOMPARE(int(state.locked_group), 1);
    }

    /// A text, of 120 different characters too, changes the keyboard map once at most, and one with the same
    /// characters does not at all.
    void theKeyboardMapIsChangedOnceAText()
    {
        int event = 0, error = 0, opcode = 0, major = XkbMajorVersion, minor = XkbMinorVersion;
        QVERIFY(XkbQueryExtension(display, &opcode, &event, &error, &major, &minor));
        XkbSelectEvents(display, XkbUseCoreKbd, XkbMapNotifyMask, XkbMapNotifyMask);
        const auto changes = [&] {
            XSync(display, False);
            QMap<int, int> count; // by device, as the map of each is told
            while (XPending(display) > 0) {
                XEvent next;
                XNextEvent(display, &next);
                const auto &xkb = reinterpret_cast<const XkbEvent &>(next);
                if (next.type == event && xkb.any.xkb_type == XkbMapNotify &&
                    (xkb.map.changed & XkbKeySymsMask) != 0) {
                    ++count[xkb.map.device];
                }
            }
            return count.isEmpty() ? 0 : *std::max_element(count.begin(), count.end());
        };
        const Target target = open("mousepad");
        QVERIFY(target);
        QString text;
        for (int i = 0; i < 120; ++i) {
            text += QChar(0x4e00 + i * 7);
        }
        QTRY_VERIFY_WITH_TIMEOUT(!isBound(), 20000);
        changes();
        QVERIFY(postText(windows, windows.focusedWindow(), text).complete);
        QCOMPARE(changes(), 1);
        QVERIFY(postText(windows, windows.focusedWindow(), text).complete);
        QCOMPARE(changes(), 0);
        XkbSelectEvents(display, XkbUseCoreKbd, XkbMapNotifyMask, 0);
        QCOMPARE(target->text(2 * text.size(), readMs), text + text);
    }

    /// Nothing is known before the first question; then the caret is followed through a text of two lines.
    void theCaretIsFollowed()
    {
        const Target target = open("mousepad");
        QVERIFY(target);
        windows.caretRectangle();
        const auto caretAfter = [&](const QString &text) {
            const std::optional<QRect> before = windows.caretRectangle();
            postText(windows, windows.focusedWindow(), text);
            const bool moved = QTest::qWaitFor(
                [&] { return windows.caretRectangle() && windows.caretRectangle() != before; });
            return moved ? windows.caretRectangle() : std::nullopt;
        };
        const auto first = caretAfter("甲"_s);
        const auto second = caretAfter("乙丙丁"_s);
        const auto third = caretAfter("\n"_s);
        QVERIFY(first && second && third);
        QVERIFY(second->left() > first->left() && second->top() == first->top());
        QVERIFY(third->top() > second->top() && third->left() < second->left());
        QVERIFY(first->height() > 5 && first->height() < 100);
    }

    void windowsAreFoundAndClosed()
    {
        const Target target = open("xterm");
        QVERIFY(target);
        QVERIFY(windows.windowClass(mevo::WindowId(target->windowId())).contains(QLatin1String("XTerm")));
        const QString title = windows.windowTitle(mevo::WindowId(target->windowId()));
        QCOMPARE(windows.findWindow("XTerm"_s, title), mevo::WindowId(target->windowId()));
        QCOMPARE(windows.findWindow("NoSuchClass"_s, title), mevo::WindowId(0));
        QVERIFY(windows.closeWindow(mevo::WindowId(target->windowId())));
        QTRY_VERIFY(!windows.isWindow(mevo::WindowId(target->windowId())));
        QVERIFY(!windows.closeWindow(mevo::WindowId(target->windowId())));
    }

    /// A window that no window manager looks after, as a floating microphone may be.
    void windowsThatNobodyManages_data()
    {
        const Rows<bool, bool> row; // shown, closable
        row("shown", true, true);
        row("hidden", false, true);
        row("without a way to close it", true, false);
    }

    void windowsThatNobodyManages()
    {
        const auto [shown, closable] = rowOf<bool, bool>();
        const auto closed = [](Display *connection) { XCloseDisplay(connection); };
        const std::unique_ptr<Display, decltype(closed)> other(XOpenDisplay(nullptr), closed);
        XSetWindowAttributes attributes{};
        attributes.override_redirect = True;
        const Window window =
            XCreateWindow(other.get(), DefaultRootWindow(other.get()), 0, 0, 50, 50, 0, CopyFromParent,
                          InputOutput, nullptr, CWOverrideRedirect, &attributes);
        QByteArray name("floating"), className("FloatingFrame");
        XClassHint hint{name.data(), className.data()};
        XSetClassHint(other.get(), window, &hint);
        const QByteArray title("语音悬浮窗 ");
        XChangeProperty(other.get(), window, XInternAtom(other.get(), "_NET_WM_NAME", False),
                        XInternAtom(other.get(), "UTF8_STRING", False), 8, PropModeReplace,
                        reinterpret_cast<const unsigned char *>(title.constData()), title.size());
        Atom close = XInternAtom(other.get(), "WM_DELETE_WINDOW", False);
        if (closable) {
            XSetWMProtocols(other.get(), window, &close, 1);
        }
        if (shown) {
            XMapWindow(other.get(), window);
        }
        XSync(other.get(), False);
        const mevo::WindowId expected = shown ? window : 0;
        QCOMPARE(windows.findWindow("FloatingFrame"_s, "语音悬浮窗 "_s), expected);
        QCOMPARE(windows.findWindow({}, "语音悬浮窗 "_s), expected);
        QCOMPARE(windows.findWindow("FloatingFrame"_s, "语音悬浮窗"_s), mevo::WindowId(0));
        QCOMPARE(windows.closeWindow(window), closable);
        XEvent event{};
        const auto asked = [&] { return XCheckTypedEvent(other.get(), ClientMessage, &event) == True; };
        if (closable) {
            QVERIFY(QTest::qWaitFor(asked));
        } else {
            XSync(other.get(), False);
            QVERIFY(!asked());
        }
        QVERIFY(!closable || Atom(event.xclient.data.l[0]) == close);
    }
};

QTEST_MAIN(TestX11Typing)
#include "tst_x11_typing.moc"
