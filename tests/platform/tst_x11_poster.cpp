#include "platform/linux/ScreenLock.h"
#include "platform/linux/X11Poster.h"

#include <QtTest>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/Xutil.h>

#include <poll.h>

#include <atomic>
#include <mutex>
#include <thread>

namespace {

/// A program with one window, on a connection and a thread of its own, that can be made to hang.
class Program
{
public:
    Program()
        : m_thread([this] { run(); })
    {
    }
    ~Program()
    {
        m_end = true;
        hangs = false;
        m_thread.join();
    }

    /// 0 until the window has the keyboard.
    mevo::WindowId window() const { return m_ready ? m_window.load() : 0; }
    QString text() const
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        return m_text;
    }

    std::atomic<bool> hangs{false};
    std::atomic<int> hangsAfterKeys{-1}; ///< from when that many have been taken; -1 for never

private:
    void run()
    {
        Display *display = XOpenDisplay(nullptr);
        const Window window =
            XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 300, 200, 0, 0, 0);
        Atom ping = XInternAtom(display, "_NET_WM_PING", False);
        XSetWMProtocols(display, window, &ping, 1);
        XSelectInput(display, window, KeyPressMask | FocusChangeMask);
        XMapRaised(display, window);
        m_window = window;
        while (!m_end) {
            if (hangs || XPending(display) == 0) {
                pollfd wait{hangs ? -1 : ConnectionNumber(display), POLLIN, 0};
                poll(&wait, 1, 2);
                continue;
            }
            XEvent event;
            XNextEvent(display, &event);
            take(display, event, ping);
        }
        XCloseDisplay(display);
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
        } else if (event.type == KeyPress) {
            unsigned taken = 0;
            KeySym symbol = 0;
            XkbLookupKeySym(display, KeyCode(event.xkey.keycode), event.xkey.state, &taken, &symbol);
            const std::lock_guard<std::mutex> lock(m_mutex);
            m_text += QChar(ushort(symbol & 0xffff));
            hangs = m_text.size() == hangsAfterKeys;
        }
    }

    std::atomic<mevo::WindowId> m_window{0};
    std::atomic<bool> m_ready{false};
    std::atomic<bool> m_end{false};
    mutable std::mutex m_mutex;
    QString m_text;
    std::thread m_thread;
};

/// More different characters than keys can be bound to at one time.
QString distinct(int count)
{
    QString text;
    for (int i = 0; i < count; ++i) {
        text += QChar(0x4e00 + i);
    }
    return text;
}

} // namespace

class TestX11Poster : public QObject
{
    Q_OBJECT

    const mevo::ScreenLock m_lock;

private Q_SLOTS:
    /// A program that hangs for a moment, or for longer than it is waited for, in the middle of a text. What
    /// it was sent stands in its text when it wakes, and what is typed next is what is meant.
    void aProgramThatHangsInTheMiddle_data()
    {
        QTest::addColumn<int>("limitMs");
        QTest::addColumn<bool>("complete");
        QTest::newRow("for a moment") << 30000 << true;
        QTest::newRow("for long") << 300 << false;
    }

    void aProgramThatHangsInTheMiddle()
    {
        QFETCH(int, limitMs);
        QFETCH(bool, complete);
        mevo::X11Poster poster(m_lock);
        QVERIFY(poster.isUsable());
        poster.takenLimitMs = limitMs;
        Program program;
        QTRY_VERIFY_WITH_TIMEOUT(program.window() != 0, 30000);
        const QString first = distinct(500), next = first.mid(100, 300);
        program.hangsAfterKeys = 5;
        std::atomic<bool> posted{false};
        std::thread wakes([&program, &posted, complete] {
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
        poster.takenLimitMs = 30000;
        const mevo::PostResult after = poster.post(program.window(), next);
        QVERIFY(after.complete);
        const QString text = program.text();
        QVERIFY(text.endsWith(next));
        QCOMPARE(text.chopped(next.size()), first.left(text.size() - next.size()));
        QCOMPARE(text.size() == first.size() + next.size(), complete);
        QVERIFY(poster.rest());
    }
};

QTEST_MAIN(TestX11Poster)
#include "tst_x11_poster.moc"
