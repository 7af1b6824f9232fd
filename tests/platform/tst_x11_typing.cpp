#include "platform/linux/X11WindowSystem.h"
#include "support/TargetWindow.h"

#include <QtTest>

#include <X11/Xlib.h>

namespace {

const QString mixedText =
    QStringLiteral("今天天气很好，我们去公园。Hello, World! (a<b) {c} \"d\" 'e' ~`@#$%^&*_+-=|\\;:/?.>"
                   "Ünïcödé ¡Ñ! 【标题】《书名》——…… 😀𠀀 完");

QString longText()
{
    QString text;
    for (int i = 0; i < 600; ++i) {
        text += QChar(0x4e00 + i * 7 % 3000);
    }
    return text;
}

} // namespace

Q_DECLARE_METATYPE(TargetWindow::Kind)

class TestX11Typing : public QObject
{
    Q_OBJECT

    mevo::X11WindowSystem windows;

    mevo::PostResult post(mevo::WindowId window, const QString &text)
    {
        mevo::PostResult result;
        bool done = false;
        windows.postText(window, text, [&](const mevo::PostResult &posted) {
            result = posted;
            done = true;
        });
        if (!QTest::qWaitFor([&] { return done; }, 20000)) {
            QTest::qFail("the text is still being typed", __FILE__, __LINE__);
        }
        return result;
    }

private Q_SLOTS:
    void initTestCase() { QVERIFY(windows.canPostText()); }

    void textArrivesWhole_data()
    {
        QTest::addColumn<TargetWindow::Kind>("kind");
        QTest::addColumn<QString>("text");
        const struct
        {
            const char *name;
            TargetWindow::Kind kind;
        } targets[] = {{"xterm", TargetWindow::Xterm},
                       {"mousepad", TargetWindow::Mousepad},
                       {"featherpad", TargetWindow::Featherpad}};
        for (const auto &target : targets) {
            QTest::addRow("%s mixed", target.name) << target.kind << mixedText;
            QTest::addRow("%s 600 characters", target.name) << target.kind << longText();
            QTest::addRow("%s repeated", target.name) << target.kind << QStringLiteral("哈哈哈aa啊啊\tbb");
        }
    }

    void textArrivesWhole()
    {
        QFETCH(TargetWindow::Kind, kind);
        QFETCH(QString, text);
        TargetWindow target(kind, windows);
        QVERIFY(target.start());
        const mevo::PostResult result = post(target.focusedWindow(), text);
        QVERIFY(result.complete);
        QCOMPARE(result.posted, text.size());
        QCOMPARE(target.waitForText(text), text);
    }

    void lineEndsAreReturns()
    {
        TargetWindow target(TargetWindow::Mousepad, windows);
        QVERIFY(target.start());
        QVERIFY(post(target.focusedWindow(), QStringLiteral("一\r\n二\n三\r四\x01五")).complete);
        QCOMPARE(target.waitForText(QStringLiteral("一\n二\n三\n四五")), QStringLiteral("一\n二\n三\n四五"));
    }

    void textGoesToItsWindowWhenTheFocusHasMoved()
    {
        TargetWindow first(TargetWindow::Xterm, windows);
        TargetWindow second(TargetWindow::Xterm, windows);
        QVERIFY(first.start());
        const mevo::WindowId saved = first.focusedWindow();
        QVERIFY(second.start());
        const QString text = QStringLiteral("这段话属于第一个窗口 abc");
        QVERIFY(post(saved, text).complete);
        QCOMPARE(first.waitForText(text), text);
        QVERIFY(post(second.focusedWindow(), QStringLiteral("第二个")).complete);
        QCOMPARE(second.waitForText(QStringLiteral("第二个")), QStringLiteral("第二个"));
    }

    void queuedTextsKeepTheirOrder()
    {
        TargetWindow target(TargetWindow::Xterm, windows);
        QVERIFY(target.start());
        QString expected;
        for (int i = 0; i < 20; ++i) {
            const QString text = QStringLiteral("第%1句。").arg(i);
            expected += text;
            windows.postText(target.focusedWindow(), text, {});
        }
        QCOMPARE(target.waitForText(expected), expected);
    }

    void aWindowThatIsGoneTakesNothing()
    {
        TargetWindow target(TargetWindow::Xterm, windows);
        QVERIFY(target.start());
        const mevo::WindowId window = target.focusedWindow();
        target.stop();
        QTRY_VERIFY(!windows.isWindow(window));
        const mevo::PostResult result = post(window, QStringLiteral("没有人"));
        QVERIFY(!result.complete);
        QCOMPARE(result.posted, 0);
    }

    void theKeyboardMapIsLeftAsItWas()
    {
        Display *display = XOpenDisplay(nullptr);
        QVERIFY(display != nullptr);
        int first = 0, last = 0, width = 0;
        XDisplayKeycodes(display, &first, &last);
        const auto symbols = [&] {
            KeySym *map = XGetKeyboardMapping(display, static_cast<KeyCode>(first), last - first + 1, &width);
            std::vector<KeySym> copy(map, map + width * (last - first + 1));
            XFree(map);
            return copy;
        };
        const std::vector<KeySym> before = symbols();
        TargetWindow target(TargetWindow::Xterm, windows);
        QVERIFY(target.start());
        for (int i = 0; i < 30; ++i) {
            QVERIFY(post(target.focusedWindow(), QStringLiteral("甲乙丙%1").arg(i)).complete);
        }
        QVERIFY(symbols() == before);
        XCloseDisplay(display);
    }

    void windowsAreFoundAndClosed()
    {
        TargetWindow target(TargetWindow::Xterm, windows);
        QVERIFY(target.start());
        QVERIFY(windows.windowClass(target.topLevel()).contains(QLatin1String("XTerm")));
        const QString title = windows.windowTitle(target.topLevel());
        QCOMPARE(windows.findWindow(QStringLiteral("XTerm"), title), target.topLevel());
        QCOMPARE(windows.findWindow(QStringLiteral("NoSuchClass"), title), mevo::WindowId(0));
        QVERIFY(windows.closeWindow(target.topLevel()));
        QTRY_VERIFY(!windows.isWindow(target.topLevel()));
        QVERIFY(!windows.closeWindow(target.topLevel()));
    }
};

QTEST_MAIN(TestX11Typing)
#include "tst_x11_typing.moc"
