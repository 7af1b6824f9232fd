// What a text for a window without the focus leaves behind on the desktop, under the window manager that
// runs here.

#include "desk/TargetWindow.h"
#include "platform/linux/X11WindowSystem.h"

#include <QtTest>

#include <X11/Xatom.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace {

constexpr int readMs = 8000;
const QString sentence = QStringLiteral("这段话 abc");

} // namespace

class TestX11Desktops : public QObject
{
    Q_OBJECT

    using Target = std::unique_ptr<mevo::lab::TargetWindow>;

    mevo::X11WindowSystem windows;
    Display *display = XOpenDisplay(nullptr);

    bool post(mevo::WindowId window, const QString &text)
    {
        bool done = false, complete = false;
        windows.postText(window, text, [&](const mevo::PostResult &result) {
            complete = result.complete;
            done = true;
        });
        return QTest::qWaitFor([&] { return done; }, 20000) && complete;
    }

    void key(KeySym symbol, KeySym modifier = NoSymbol)
    {
        const auto strike = [this](KeySym which, Bool down) {
            if (which != NoSymbol) {
                XTestFakeKeyEvent(display, XKeysymToKeycode(display, which), down, CurrentTime);
            }
        };
        strike(modifier, True);
        strike(symbol, True);
        strike(symbol, False);
        strike(modifier, False);
        XFlush(display);
    }

    void click(Window window)
    {
        int x = 0, y = 0;
        Window child = 0;
        XTranslateCoordinates(display, window, DefaultRootWindow(display), 60, 60, &x, &y, &child);
        XTestFakeMotionEvent(display, -1, x, y, CurrentTime);
        XTestFakeButtonEvent(display, 1, True, CurrentTime);
        XTestFakeButtonEvent(display, 1, False, CurrentTime);
        XFlush(display);
    }

    bool isViewable(mevo::WindowId window)
    {
        XWindowAttributes attributes{};
        XGetWindowAttributes(display, window, &attributes);
        return attributes.map_state == IsViewable;
    }

    std::vector<Window> stacking()
    {
        Atom type = 0;
        int format = 0;
        unsigned long count = 0, rest = 0;
        unsigned char *data = nullptr;
        XGetWindowProperty(display, DefaultRootWindow(display),
                           XInternAtom(display, "_NET_CLIENT_LIST_STACKING", False), 0, 100, False, XA_WINDOW,
                           &type, &format, &count, &rest, &data);
        const auto *items = reinterpret_cast<const Window *>(data);
        std::vector<Window> order(items, items + (data != nullptr ? count : 0));
        XFree(data);
        return order;
    }

private Q_SLOTS:
    void theDesktopIsAsTheUserLeftIt()
    {
        const Target target = mevo::lab::TargetWindow::start(QStringLiteral("xterm"));
        QVERIFY(target);
        const mevo::WindowId targetWindow = windows.focusedWindow();
        const Target used = mevo::lab::TargetWindow::start(QStringLiteral("xterm"));
        QVERIFY(used);
        XMoveWindow(display, used->windowId(), 820, 420);
        XFlush(display);
        const mevo::WindowId usedWindow = windows.focusedWindow();
        QTRY_COMPARE(windows.foregroundWindow(), mevo::WindowId(used->windowId()));
        const std::vector<Window> order = stacking();

        QVERIFY(post(targetWindow, sentence));
        QCOMPARE(target->text(sentence.size(), readMs), sentence);
        QTRY_COMPARE(windows.foregroundWindow(), mevo::WindowId(used->windowId()));
        QCOMPARE(windows.focusedWindow(), usedWindow);
        QVERIFY(stacking() == order);
        key(XK_u);
        QCOMPARE(used->text(1, readMs), QStringLiteral("u"));

        click(target->windowId());
        QTRY_COMPARE(windows.focusedWindow(), targetWindow);
        key(XK_t);
        QCOMPARE(target->text(sentence.size() + 1, readMs), sentence + QLatin1Char('t'));
        click(used->windowId());
        QTRY_COMPARE(windows.focusedWindow(), usedWindow);

        QVERIFY(post(targetWindow, sentence));
        // A window manager may be taking its keys anew, so the user may have to press again.
        for (int press = 0; press < 5 && windows.isWindow(used->windowId()); ++press) {
            key(XK_F4, XK_Alt_L);
            (void)QTest::qWaitFor([&] { return !windows.isWindow(used->windowId()); }, 1000);
        }
        QVERIFY(!windows.isWindow(used->windowId()));
        QVERIFY(windows.isWindow(target->windowId()));
        QCOMPARE(target->text(2 * sentence.size() + 1, readMs), sentence + QLatin1Char('t') + sentence);
    }

    /// Some window managers leave minimised windows where keys reach them: what is said to have arrived has.
    void whatAMinimisedWindowIsSaidToTakeItTakes()
    {
        const Target target = mevo::lab::TargetWindow::start(QStringLiteral("xterm"));
        QVERIFY(target);
        const mevo::WindowId window = windows.focusedWindow();
        const Target used = mevo::lab::TargetWindow::start(QStringLiteral("xterm"));
        QVERIFY(used);
        XIconifyWindow(display, target->windowId(), DefaultScreen(display));
        XSync(display, False);
        (void)QTest::qWaitFor([&] { return !isViewable(window); }, 500); // some never hide it
        const bool arrived = post(window, sentence);
        QCOMPARE(arrived, isViewable(window));
        QCOMPARE(target->text(arrived ? sentence.size() : 0, readMs), arrived ? sentence : QString());
        QCOMPARE(used->peek(), QString());
    }
};

QTEST_MAIN(TestX11Desktops)
#include "tst_x11_desktops.moc"
