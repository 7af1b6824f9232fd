// Texts into programs that are too big for every desk. What is not installed is left out.

#include "desk/TargetWindow.h"
#include "platform/PostText.h"
#include "platform/linux/X11WindowSystem.h"
#include "support/Texts.h"

#include <QProcess>
#include <QtTest>

#include <X11/XKBlib.h>
#include <X11/Xlib.h>
#include <X11/extensions/XTest.h>
#include <X11/keysym.h>

namespace {

constexpr int readMs = 60000;

/// Some 200 characters: Chinese, Latin, the same one twice, line ends, and characters of two halves.
QString mixedText()
{
    QString text;
    for (int i = 0; i < 5; ++i) {
        text += "会议改到下午三点半，大家带上上周的报告；Version %1%1 的 tests 在附件里😀𠀀。\n"_s.arg(i);
        text += QChar(0x4e00 + 30 * i);
    }
    return text;
}

} // namespace

class TestX11Targets : public QObject
{
    Q_OBJECT

    using Target = std::unique_ptr<mevo::lab::TargetWindow>;

    mevo::X11WindowSystem windows;
    Display *display = XOpenDisplay(nullptr);

    /// Some editors end the file with a line end of their own, and terminals hand Return on as it is.
    static QString saved(mevo::lab::TargetWindow &target, int length)
    {
        QString text = target.text(length, readMs);
        text.replace(QLatin1Char('\r'), QLatin1Char('\n'));
        if (text.endsWith(QLatin1Char('\n'))) {
            text.chop(1);
        }
        return text;
    }

    /// Types into an empty target. A busy machine may let a big program stand still for so long that the text
    /// is said not to have gone; then it is tried again.
    mevo::PostResult postIntoEmpty(mevo::lab::TargetWindow &target, mevo::lab::TargetWindow *other,
                                   const QString &text)
    {
        mevo::PostResult result;
        for (int attempt = 0; attempt < 3; ++attempt) {
            if (!target.clear() || (other != nullptr && !other->focus())) {
                break;
            }
            result = postText(windows, m_window, text);
            if (result.stop != mevo::PostStop::Hung) {
                break;
            }
        }
        return result;
    }

    mevo::WindowId m_window = 0;

private Q_SLOTS:
    void cleanupTestCase() { XCloseDisplay(display); }

    void textArrivesWhole_data()
    {
        QTest::addColumn<QString>("kind");
        for (const QString &kind : mevo::lab::TargetWindow::furtherKinds()) {
            QTest::newRow(qPrintable(kind)) << kind;
        }
    }

    void textArrivesWhole()
    {
        if (QTest::currentDataTag() == nullptr) {
            QSKIP("none of them is installed");
        }
        QFETCH(QString, kind);
        const Target target = mevo::lab::TargetWindow::start(kind);
        QVERIFY(target);
        m_window = windows.focusedWindow();
        const QString text = mixedText();
        // Kate drops characters of two halves, and LibreOffice does without the focus: a text goes up to the
        // first of them, and that is said.
        const int firstPair = text.indexOf("😀"_s);
        const int typable = kind == QLatin1String("kate") ? firstPair : text.size();
        const int unfocused = kind.startsWith(QLatin1String("libreoffice")) ? firstPair : typable;
        const auto arrives = [&](mevo::lab::TargetWindow *other, int expected, const char *how) {
            const mevo::PostResult result = postIntoEmpty(*target, other, text);
            QVERIFY2(result.posted == expected && result.complete == (expected == text.size()),
                     qPrintable("%1: %2 of %3, %4"_s.arg(QLatin1String(how))
                                    .arg(result.posted)
                                    .arg(text.size())
                                    .arg(int(result.stop))));
            QVERIFY2(other == nullptr || other->hasFocus(), how);
            const QString seen = saved(*target, expected);
            QVERIFY2(seen == text.left(expected),
                     qPrintable(QLatin1String(how) + QLatin1String(": ") + seen));
        };

        arrives(nullptr, typable, "focused");

        XTestFakeKeyEvent(display, XKeysymToKeycode(display, XK_Shift_L), True, CurrentTime);
        XSync(display, False);
        XkbLockModifiers(display, XkbUseCoreKbd, LockMask, LockMask);
        const mevo::PostResult withShift = postText(windows, m_window, "a大写B"_s);
        XkbLockModifiers(display, XkbUseCoreKbd, LockMask, 0);
        XTestFakeKeyEvent(display, XKeysymToKeycode(display, XK_Shift_L), False, CurrentTime);
        XSync(display, False);
        QVERIFY(withShift.complete);
        QCOMPARE(saved(*target, typable + 4), text.left(typable) + "a大写B"_s);

        QCOMPARE(QProcess::execute("setxkbmap"_s, {"us,ru"_s}), 0);
        XkbLockGroup(display, XkbUseCoreKbd, 1);
        XSync(display, False);
        const mevo::PostResult secondLayout = postText(windows, m_window, "layout 二"_s);
        QCOMPARE(QProcess::execute("setxkbmap"_s, {"us"_s}), 0);
        QVERIFY(secondLayout.complete);
        QCOMPARE(saved(*target, typable + 12), text.left(typable) + "a大写Blayout 二"_s);

        const Target other = mevo::lab::TargetWindow::start("xterm"_s);
        QVERIFY(other);
        arrives(other.get(), unfocused, "without the focus");
        if (unfocused != text.size() && unfocused != typable) {
            QVERIFY(target->clear() && other->focus());
            QString plain = text;
            plain.remove("😀𠀀"_s);
            QVERIFY(postText(windows, m_window, plain).complete);
            QCOMPARE(saved(*target, plain.size()), plain);
        }
        QVERIFY(other->peek().isEmpty());
    }
};

QTEST_MAIN(TestX11Targets)
#include "tst_x11_targets.moc"
