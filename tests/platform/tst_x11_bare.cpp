// A desktop without a window manager: nobody tells there which window is in front.

#include "platform/linux/X11WindowSystem.h"

#include <QtTest>

#include <X11/Xlib.h>

class TestX11Bare : public QObject
{
    Q_OBJECT

    mevo::X11WindowSystem windows;
    Display *display = nullptr;
    Window left = 0, right = 0, field = 0; ///< the field is in the left one

    Window show(Window parent, int x)
    {
        const Window window = XCreateSimpleWindow(display, parent, x, 0, 100, 100, 0, 0, 0);
        XSelectInput(display, window, StructureNotifyMask);
        XMapWindow(display, window);
        XEvent event{};
        XWindowEvent(display, window, StructureNotifyMask, &event);
        return window;
    }
    void focus(Window window)
    {
        XSetInputFocus(display, window, RevertToNone, CurrentTime);
        XSync(display, False);
    }

private Q_SLOTS:
    void initTestCase()
    {
        display = XOpenDisplay(nullptr);
        QVERIFY(display != nullptr);
        left = show(DefaultRootWindow(display), 0);
        field = show(left, 10);
        right = show(DefaultRootWindow(display), 200);
    }
    void cleanupTestCase() { XCloseDisplay(display); }

    void theFocusTells()
    {
        focus(field);
        QCOMPARE(windows.foregroundWindow(), mevo::WindowId(left));
        QVERIFY(windows.activate(right));
        QCOMPARE(windows.foregroundWindow(), mevo::WindowId(right));
        focus(None);
        QCOMPARE(windows.foregroundWindow(), mevo::WindowId(0));
    }

    /// Keys go to the window under the pointer.
    void theFocusFollowsThePointer()
    {
        focus(PointerRoot);
        XWarpPointer(display, None, DefaultRootWindow(display), 0, 0, 0, 0, 50, 50);
        XSync(display, False);
        QCOMPARE(windows.foregroundWindow(), mevo::WindowId(left));
        XWarpPointer(display, None, DefaultRootWindow(display), 0, 0, 0, 0, 150, 50);
        XSync(display, False);
        QCOMPARE(windows.foregroundWindow(), mevo::WindowId(0));
    }
};

QTEST_MAIN(TestX11Bare)
#include "tst_x11_bare.moc"
