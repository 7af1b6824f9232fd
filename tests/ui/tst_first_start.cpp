// The window that helps a new user, and what it decides.

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

Q_DECLARE_METATYPE(mevo::FirstStartFacts)

class TestFirstStart : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lines_data()
    {
        QTest::addColumn<FirstStartFacts>("facts");
        // "+" for what works, "?" for what is not known, the text, the helps behind "|"
        QTest::addColumn<QString>("recognition");
        QTest::addColumn<QString>("receiver");
        QTest::addColumn<QString>("microphone");
        QTest::addColumn<bool>("needed");
        const QString account = QStringLiteral("+语音识别：已有账号"),
                      connected = QStringLiteral("+接收器：已连接"),
                      found = QStringLiteral("+麦克风：已找到");
        const auto row = [](const char *name, const FirstStartFacts &facts, const QString &recognition,
                            const QString &receiver, const QString &microphone, bool needed) {
            QTest::newRow(name) << facts << recognition << receiver << microphone << needed;
        };
        // account, accounts unread, input method, receiver, receiver refused, receiver needed, microphone
        row("all there", {true, false, false, true, false, true, true}, account, connected, found, false);
        row("nothing", {false, false, false, false, false, true, false},
            QStringLiteral("-语音识别：没有账号|填写自有账号|使用电脑上的输入法"),
            QStringLiteral("-接收器：没有找到，请插入电脑的USB接口"),
            QStringLiteral("-麦克风：没有找到|选择麦克风"), true);
        row("a locked keyring", {false, true, false, true, false, true, true},
            QStringLiteral("?语音识别：保存的账号暂时无法读取|填写自有账号|使用电脑上的输入法"), connected,
            found, false);
        row("an input method", {false, false, true, true, false, true, true},
            QStringLiteral("+语音识别：使用电脑上的语音输入法"), connected, found, false);
        row("no rights", {true, false, false, false, true, true, true}, account,
            QStringLiteral("-接收器：已插入，但没有使用权限|取得权限"), found, true);
        row("no rights where it is not needed", {true, false, false, false, true, false, true}, account,
            QStringLiteral("-接收器：已插入，但没有使用权限|取得权限"), found, true);
        row("without a receiver", {true, false, false, false, false, false, true}, account,
            QStringLiteral("+接收器：没有插入，可以用屏幕上的话筒"), found, false);
        row("no microphone", {true, false, false, true, false, true, false}, account, connected,
            QStringLiteral("-麦克风：没有找到|选择麦克风"), true);
    }
    void lines()
    {
        QFETCH(FirstStartFacts, facts);
        const auto lines = mevo::firstStartLines(facts);
        QCOMPARE(lines.size(), std::size_t(3));
        QStringList texts;
        for (const mevo::FirstStartLine &line : lines) {
            QString text = QStringLiteral("+-?").at(int(line.state)) + line.text;
            for (const FirstStartHelp help : line.helps) {
                text += QLatin1Char('|') + mevo::firstStartHelpText(help);
            }
            texts.append(text);
        }
        QTEST(texts[0], "recognition");
        QTEST(texts[1], "receiver");
        QTEST(texts[2], "microphone");
        QTEST(mevo::isFirstStartHelpNeeded(facts), "needed");
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
        auto *trial = dialog.findChild<QLineEdit *>(QStringLiteral("lineEdit_Trial"));
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
        auto *rule = dialog.findChild<QPlainTextEdit *>(QStringLiteral("plainTextEdit_UdevRule"));
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

        trial->setText(QStringLiteral("你好"));
        dialog.setFacts({true, false, false, true, false, true, true});
        QVERIFY(!rule->isVisible());
        QVERIFY(button("pushButton_OwnAccount") == nullptr);
        QCOMPARE(trial->text(), QStringLiteral("你好"));
        QTest::mouseClick(button("pushButton_Close"), Qt::LeftButton);
        QVERIFY(!dialog.isVisible());
    }
};

QTEST_MAIN(TestFirstStart)
#include "tst_first_start.moc"
