// Texts into programs that are too big for every desk.

#include "desk/TargetWindow.h"
#include "platform/PostText.h"
#include "platform/linux/X11WindowSystem.h"

#include <QStandardPaths>
#include <QtTest>

class TestX11Targets : public QObject
{
    Q_OBJECT

    /// Some editors end the file with a line end of their own.
    static QString saved(mevo::lab::TargetWindow &target, int length)
    {
        QString text = target.text(length, 8000);
        if (text.endsWith(QLatin1Char('\n'))) {
            text.chop(1);
        }
        return text;
    }

private Q_SLOTS:
    void textArrivesWhole_data()
    {
        QTest::addColumn<bool>("focused");
        for (const char *kind : {"kate", "gnome-text-editor"}) {
            QTest::addRow("%s", kind) << true;
            QTest::addRow("%s without the focus", kind) << false;
        }
    }

    void textArrivesWhole()
    {
        QFETCH(bool, focused);
        const QString kind = QString::fromLatin1(QTest::currentDataTag()).section(QLatin1Char(' '), 0, 0);
        if (QStandardPaths::findExecutable(kind).isEmpty()) {
            QSKIP("not installed");
        }
        mevo::X11WindowSystem windows;
        const auto target = mevo::lab::TargetWindow::start(kind);
        QVERIFY(target);
        const mevo::WindowId window = windows.focusedWindow();
        const auto other = focused ? nullptr : mevo::lab::TargetWindow::start(QStringLiteral("xterm"));
        QString text;
        for (int i = 0; i < 5; ++i) {
            text += QStringLiteral("会议改到下午三点半，version %1 的结果在附件里。\n").arg(i);
            text += QChar(0x4e00 + 30 * i);
        }
        QVERIFY(postText(windows, window, text).complete);
        QCOMPARE(saved(*target, text.size()), text);

        // Characters of two halves arrive, or are said not to have.
        const QString rare = QStringLiteral("123𠀀😀我");
        const mevo::PostResult result = postText(windows, window, rare);
        QCOMPARE(result.complete, kind != QLatin1String("kate"));
        QCOMPARE(result.posted, result.complete ? rare.size() : 3);
        text += rare.left(result.posted);
        QCOMPARE(saved(*target, text.size()), text);
        QVERIFY(focused || other->peek().isEmpty());
    }
};

QTEST_MAIN(TestX11Targets)
#include "tst_x11_targets.moc"
