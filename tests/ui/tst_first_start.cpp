// The window that helps a new user, and what it decides.

#include "support/Rows.h"
#include "ui/FirstStartDialog.h"

#include <QClipboard>
#include <QFile>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QScreen>
#include <QtTest>

using mevo::FirstStartFacts;
using mevo::FirstStartHelp;

class TestFirstStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lines_data()
    {
        // facts, recognition, receiver, microphone, needed
        const Rows<FirstStartFacts, QString, QString, QString, bool> row;
        // "+" for what works, "?" for what is not known, the text, the helps behind "|"
        const QString account = "+语音识别：已有账号"_s, connected = "+接收器：已连接"_s,
                      found = "+麦克风：已找到"_s;
        // account, accounts unread, input method, receiver, receiver refused, receiver needed, microphone
        row("all there", {true, false, false, true, false, true, true}, account, connected, found, false);
        row("nothing", {false, false, false, false, false, true, false},
            "-语音识别：没有账号|填写自有账号|使用电脑上的输入法"_s,
            "-接收器：没有找到，请插入电脑的USB接口"_s, "-麦克风：没有找到|选择麦克风"_s, true);
        row("a locked keyring", {false, true, false, true, false, true, true},
            "?语音识别：保存的账号暂时无法读取|填写自有账号|使用电脑上的输入法"_s, connected, found, false);
        row("an input method", {false, false, true, true, false, true, true},
            "+语音识别：使用电脑上的语音输入法"_s, connected, found, false);
        row("no rights", {true, false, false, false, true, true, true}, account,
            "-接收器：已插入，但没有使用权限|取得权限"_s, found, true);
        row("no rights where it is not needed", {true, false, false, false, true, false, true}, account,
            "-接收器：已插入，但没有使用权限|取得权限"_s, found, true);
        row("without a receiver", {true, false, false, false, false, false, true}, account,
            "+接收器：没有插入，可以用屏幕上的话筒"_s, found, false);
        row("no microphone", {true, false, false, true, false, true, false}, account, connected,
            "-麦克风：没有找到|选择麦克风"_s, true);
    }
    void lines()
    {
        const auto [facts, recognition, receiver, microphone, needed] =
            rowOf<FirstStartFacts, QString, QString, QString, bool>();
        const auto lines = mevo::firstStartLines(facts);
        QCOMPARE(lines.size(), std::size_t(3));
        QStringList texts;
        for (const mevo::FirstStartLine &line : lines) {
            QString text = "+-?"_s.at(int(line.state)) + line.text;
            for (const FirstStartHelp help : line.helps) {
                text += QLatin1Char('|') + mevo::firstStartHelpText(help);
            }
            texts.append(text);
        }
        QCOMPARE(texts[0], recognition);
        QCOMPARE(texts[1], receiver);
        QCOMPARE(texts[2], microphone);
        QCOMPARE(mevo::isFirstStartHelpNeeded(facts), needed);
    }

    void ruleIsTheInstalledOne()
    {
        QFile file(QStringLiteral(RULE_FILE));
        QVERIFY(file.open(QIODevice::ReadOnly));
        QString rule;
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (!line.startsWith('#') && !line.isEmpty()) {
                rule += QString::fromUtf8(line);
            }
        }
        QVERIFY(mevo::udevRuleCommand().contains(QLatin1Char('\'') + rule + QLatin1Char('\'')));
    }

    void window()
    {
        FirstStartDialog dialog;
        QList<FirstStartHelp> wanted;
        connect(&dialog, &FirstStartDialog::helpWanted, this,
                [&wanted](FirstStartHelp help) { wanted.append(help); });
        dialog.setFacts({false, false, false, false, true, true, false});
        dialog.show();
        auto *trial = dialog.findChild<QLineEdit *>("lineEdit_Trial"_s);
        QCOMPARE(dialog.focusWidget(), static_cast<QWidget *>(trial)); // a spoken blank presses no button
        const auto button = [&dialog](const char *name) {
            return dialog.findChild<QPushButton *>(QLatin1String(name));
        };
        for (const char *name :
             {"pushButton_OwnAccount", "pushButton_InputMethod", "pushButton_Microphone"}) {
            QVERIFY(button(name) != nullptr && button(name)->isVisible());
            QTest::mouseClick(button(name), Qt::LeftButton);
        }
        QCOMPARE(wanted, (QList<FirstStartHelp>{FirstStartHelp::OwnAccount, FirstStartHelp::InputMethod,
                                                FirstStartHelp::Microphone}));
        auto *rule = dialog.findChild<QPlainTextEdit *>("plainTextEdit_UdevRule"_s);
        QVERIFY(!rule->isVisible());
        QTest::mouseClick(button("pushButton_UdevRule"), Qt::LeftButton);
        QVERIFY(rule->isVisible());
        // Nothing is squeezed, and the window stays on its screen, which may be too small for all of it.
        dialog.resize(10, 10);
        QCoreApplication::processEvents();
        for (const QWidget *widget : dialog.findChildren<QWidget *>()) {
            if (widget->isVisible() && (qobject_cast<const QLabel *>(widget) != nullptr ||
                                        qobject_cast<const QPushButton *>(widget) != nullptr)) {
                const int needed = widget->hasHeightForWidth() ? widget->heightForWidth(widget->width())
                                                               : widget->minimumSizeHint().height();
                QVERIFY2(widget->height() >= needed, qPrintable(widget->objectName()));
            }
        }
        QVERIFY(dialog.screen()->availableGeometry().contains(dialog.frameGeometry()));
        QCOMPARE(button("pushButton_Close")->visibleRegion().boundingRect(),
                 button("pushButton_Close")->rect());
        QVERIFY(rule->visibleRegion().boundingRect() == rule->rect());
        QTest::mouseClick(button("pushButton_CopyRule"), Qt::LeftButton);
        QCOMPARE(QGuiApplication::clipboard()->text(), mevo::udevRuleCommand());

        // The Tab key goes from top to bottom.
        QWidget *at = button("pushButton_OwnAccount");
        int lowest = 0;
        for (const char *name :
             {"pushButton_InputMethod", "pushButton_UdevRule", "pushButton_Microphone",
              "plainTextEdit_UdevRule", "pushButton_CopyRule", "lineEdit_Trial", "pushButton_Close"}) {
            do {
                at = at->nextInFocusChain();
            } while ((at->focusPolicy() & Qt::TabFocus) == 0 || !at->isVisible());
            QCOMPARE(at->objectName(), QString::fromLatin1(name));
            QVERIFY(at->mapTo(&dialog, QPoint()).y() >= lowest);
            lowest = at->mapTo(&dialog, QPoint()).y();
        }

        trial->setText("你好"_s);
        dialog.setFacts({true, false, false, true, false, true, true});
        QVERIFY(!rule->isVisible());
        QVERIFY(button("pushButton_OwnAccount") == nullptr);
        QCOMPARE(trial->text(), "你好"_s);
        QTest::mouseClick(button("pushButton_Close"), Qt::LeftButton);
        QVERIFY(!dialog.isVisible());
    }
};

QTEST_MAIN(TestFirstStart)
#include "tst_first_start.moc"
