#include "base/ApplicationFiles.h"
#include "output/UndeliveredTexts.h"
#include "support/Rows.h"
#include "ui/MicTipDialog.h"
#include "window/InstanceCalls.h"
#include "window/Program.h"

#include <QDialog>
#include <QFile>
#include <QLineEdit>
#include <QPushButton>

using mevo::InstanceAnswer;
using mevo::InstanceCall;
using What = InstanceCall::What;

namespace {

/// What has become of the calls, in the order of the answers: "NAME done" and the like.
struct Answers
{
    QByteArrayList told;
    mevo::InstanceCalls::Answer operator()(const QByteArray &name)
    {
        return [this, name](InstanceAnswer answer) {
            static const char *const words[] = {"done", "kept", "refused", "not understood"};
            told.append(name + ' ' + words[static_cast<int>(answer)]);
        };
    }
};

QStringList keptTexts()
{
    QStringList texts;
    const mevo::UndeliveredTexts file(mevo::appFile("MEVOUndelivered.json"_s));
    for (const mevo::UndeliveredText &kept : file.texts()) {
        texts.append(kept.text);
    }
    return texts;
}

} // namespace

class TestInstanceCalls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init() { m_answers = {}; }
    void cleanup() { QFile::remove(mevo::appFile("MEVOUndelivered.json"_s)); }

    void aTextIsTypedOrKept_data()
    {
        // focused, limit, posted, answer, kept
        const Rows<bool, int, QStringList, QByteArray, QStringList> row;
        const QString text = "换行。__over__"_s;
        row("typed", true, -1, QStringList{"post 11 "_s + text}, QByteArray("a done"), QStringList{});
        row("in part", true, 2, QStringList{"post 11 换行"_s}, QByteArray("a kept"),
            QStringList{"。__over__"_s});
        row("no window", false, -1, QStringList{}, QByteArray("a kept"), QStringList{text});
    }

    /// Unchanged, whatever it says, and whichever mode is in force.
    void aTextIsTypedOrKept()
    {
        const auto [focused, limit, posted, answer, kept] =
            rowOf<bool, int, QStringList, QByteArray, QStringList>();
        Started program;
        program.window->VoiceTypeMode = false;
        program.window->VoiceCommandWordMode = true;
        program.fake.windowSystem->focused = focused ? 0x11 : 0;
        program.fake.windowSystem->postLimit = limit;
        program.window->instanceCalls().take({What::Type, "换行。__over__"_s}, m_answers("a"));
        QTRY_COMPARE(m_answers.told, QByteArrayList{answer});
        QCOMPARE(program.fake.log.calls("post"_s), posted);
        QCOMPARE(keptTexts(), kept);
    }

    void theOldestOfTooManyIsMissed()
    {
        Started program;
        program.fake.windowSystem->focused = 0;
        const auto told = [&program] { return program.fake.log.calls("message 有文字未能输入"_s); };
        for (int text = 0; text <= mevo::UndeliveredTexts::most; ++text) {
            QCOMPARE(told().filter("最早的一条已删除"_s).size(), 0);
            program.window->instanceCalls().take({What::Type, QString::number(text)}, m_answers("a"));
            QTRY_COMPARE(m_answers.told.size(), text + 1);
        }
        QCOMPARE(told().size(), mevo::UndeliveredTexts::most + 1);
        QVERIFY(told().last().contains("最早的一条已删除"_s));
        QCOMPARE(keptTexts().first(), "1"_s);
    }

    void aWindowOfOursTakesItInAFieldAlone_data()
    {
        const Rows<bool, int> row; // field, method
        row("a field has the focus", true, 0);
        row("none has", false, 0);
        row("a field has it, by the clipboard", true, 2);
        row("none has, by the clipboard", false, 2);
    }
    /// Such as the settings: what is typed to a button is nowhere.
    void aWindowOfOursTakesItInAFieldAlone()
    {
        const auto [field, method] = rowOf<bool, int>();
        Started program;
        program.window->Send2ScreenMethod = method;
        QDialog settings;
        QWidget *focused =
            field ? static_cast<QWidget *>(new QLineEdit(&settings)) : new QPushButton(&settings);
        settings.show();
        focused->setFocus();
        program.fake.windowSystem->focused = settings.winId();
        program.window->instanceCalls().take({What::Type, "一"_s}, m_answers("a"));
        QTRY_COMPARE(m_answers.told, QByteArrayList{field ? "a done" : "a kept"});
        QCOMPARE(keptTexts(), field ? QStringList() : QStringList{"一"_s});
        QCOMPARE(program.fake.log.calls("post"_s).size() + program.fake.log.calls("clipboard set"_s).size(),
                 field ? 1 : 0);
    }

    void aTextGoesByTheClipboardWhereTheSettingsSaySo()
    {
        Started program;
        program.window->Send2ScreenMethod = 2;
        program.window->instanceCalls().take({What::Type, "一"_s}, m_answers("a"));
        QVERIFY(m_answers.told.isEmpty()); // the window has not read it yet
        QTRY_COMPARE(m_answers.told, QByteArrayList{"a done"});
        QCOMPARE(program.fake.clipboard->text(), "一"_s);
        QVERIFY(program.fake.log.calls("post"_s).isEmpty());
    }

    void aTextIsPastedIntoItsOwnWindowOnly_data() { flagRows("behind another paste", "behind a sentence"); }
    /// The paste key goes to whatever has the focus when its turn comes.
    void aTextIsPastedIntoItsOwnWindowOnly()
    {
        const auto [waits] = rowOf<bool>();
        Started program;
        program.window->Send2ScreenMethod = 2;
        auto &calls = program.window->instanceCalls();
        if (waits) {
            calls.take({What::Type, "一"_s}, m_answers("a"));
            QVERIFY(program.fake.clipboard->text() == "一"_s);
        } else {
            program.key(1, true);
            QTRY_VERIFY(program.window->Recording);
        }
        calls.take({What::Type, "二"_s}, m_answers("b"));
        program.fake.windowSystem->focused = 0x22;
        if (!waits) {
            program.key(1, false);
        }
        QTRY_VERIFY_WITH_TIMEOUT(m_answers.told.contains("b kept"), 20000);
        QCOMPARE(m_answers.told, waits ? (QByteArrayList{"a done", "b kept"}) : QByteArrayList{"b kept"});
        QVERIFY(!program.fake.log.has("clipboard set 二"_s));
        QCOMPARE(keptTexts(), QStringList{"二"_s});
    }

    /// What has come during the start is done first.
    void callsAreCarriedOutInTheirOrder()
    {
        Program program;
        program.fake.processes->onSibling = [&](const QString &) {
            program.fake.processes->onSibling = nullptr;
            QVERIFY(!MainWindow::instance()->InitDone);
            for (const char *text : {"a", "b"}) {
                MainWindow::instance()->instanceCalls().take({What::Type, QString::fromLatin1(text)},
                                                             m_answers(text));
            }
        };
        program.start();
        program.window->instanceCalls().take({What::Type, "c"_s}, m_answers("c"));
        QTRY_COMPARE(m_answers.told, (QByteArrayList{"a done", "b done", "c done"}));
        QCOMPARE(program.fake.log.calls("post"_s),
                 (QStringList{"post 11 a"_s, "post 11 b"_s, "post 11 c"_s}));
    }

    /// It waits for the sentence that is being spoken, goes to the window of its own moment, and an exit
    /// keeps it where the sentence does not end.
    void aTextWaitsForTheSentenceBeforeIt()
    {
        Started program;
        program.take(1, true);
        QVERIFY(program.window->Recording);
        const int spoken = program.window->NewestSession;
        program.window->instanceCalls().take({What::Type, "一"_s}, m_answers("a"));
        program.fake.windowSystem->focused = 0x22;
        program.window->instanceCalls().take({What::Type, "二__over__"_s}, m_answers("b"));
        program.settle();
        QVERIFY(m_answers.told.isEmpty());
        QCOMPARE(program.window->NewestSession, spoken); // the talk window belongs to the speaker
        QVERIFY(program.window->Recording);
        program.take(1, false);
        QTRY_COMPARE_WITH_TIMEOUT(m_answers.told, (QByteArrayList{"a done", "b done"}), 20000);
        QCOMPARE(program.fake.log.calls("post"_s), (QStringList{"post 11 一"_s, "post 22 二__over__"_s}));
    }

    void anExitKeepsWhatHasNotBeenTyped()
    {
        Started program;
        program.fake.windowSystem->holdPosts = true;
        program.window->instanceCalls().take({What::Type, "一"_s}, m_answers("a"));
        program.window->instanceCalls().take({What::Type, "二__over__"_s}, m_answers("b"));
        program.settle();
        QVERIFY(m_answers.told.isEmpty());
        program.window->exitByItself();
        QCOMPARE(m_answers.told, (QByteArrayList{"a kept", "b kept"}));
        program.window->instanceCalls().take({What::Type, "三"_s}, m_answers("c"));
        QCOMPARE(m_answers.told.last(), QByteArray("c kept"));
        program.window->instanceCalls().take({What::Settings, {}}, m_answers("d"));
        QCOMPARE(m_answers.told.last(), QByteArray("d refused"));
        QStringList kept = keptTexts();
        kept.sort();
        QCOMPARE(kept, (QStringList{"一"_s, "三"_s, "二__over__"_s}));
    }

    void windowsAreShown()
    {
        Started program;
        auto &calls = program.window->instanceCalls();
        for (int i = 0; i < 2; ++i) { // a second time it stays
            calls.take({What::Talk, {}}, m_answers("talk"));
            QVERIFY(program.window->micTip()->isVisible());
        }
        calls.take({What::Settings, {}}, m_answers("settings"));
        program.change(mevo::DeviceNotifier::Change::Removal);
        program.settle();
        program.window->micTip()->hide();
        program.window->NoDeviceMode = false;
        calls.take({What::Talk, {}}, m_answers("without a receiver"));
        QVERIFY(!program.window->micTip()->isVisible());
        QCOMPARE(m_answers.told,
                 (QByteArrayList{"talk done", "talk done", "settings done", "without a receiver refused"}));
    }

private:
    Answers m_answers;
};

QTEST_MAIN(TestInstanceCalls)
#include "tst_instance_calls.moc"
