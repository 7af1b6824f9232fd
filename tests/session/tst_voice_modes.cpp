#include "device/ReportDispatch.h"
#include "session/ResultPipeline.h"
#include "session/TranslationPort.h"
#include "session/VoiceModes.h"
#include "support/CallLog.h"
#include "support/Rows.h"
#include "ui/MicTipDialog.h"
#include "ui/TipWindowHost.h"

#include <QPushButton>
#include <QtTest>

/// What every event makes of every voice mode, from the key report, the click or the spoken word on.

namespace {

enum class Dialog { Impossible, Missing, Hidden, Visible };

struct FakeTranslation : mevo::TranslationPort
{
    explicit FakeTranslation(CallLog &calls)
        : log(calls)
    {
    }
    bool exists() const override { return isVisible() || dialog == Dialog::Hidden; }
    bool isVisible() const override { return dialog == Dialog::Visible; }
    bool isClosing() const override { return false; }
    bool takesKeys() const override { return exists(); }
    bool create() override
    {
        log.add("create"_s);
        dialog = dialog == Dialog::Missing ? Dialog::Hidden : dialog;
        return exists();
    }
    void show() override
    {
        log.add("show"_s);
        dialog = Dialog::Visible;
    }
    void destroy() override
    {
        log.add("destroy"_s);
        dialog = Dialog::Missing;
    }
    CallLog &log;
    Dialog dialog = Dialog::Missing;
};

struct NoHost : mevo::TipWindowHost
{
    bool sendMicrophoneLatch(bool) override { return false; }
    void flushUsageCounters() override {}
    void saveFocusWindow() override {}
    bool isXpClass() const override { return false; }
};

/// A program's modes: the tip window, the pipeline and the reader's dispatch around one state.
struct Desk : mevo::PipelinePort
{
    Desk()
    {
        QObject::connect(&tip, &MicTipDialog::CreateTransDlgSignal,
                         [this] { mevo::openTranslation(state, translation); });
        state.IsOnline = true;
        state.OneShotCommandWord = false;
        state.Enable_SwitchFunctionMode = true;
        state.Enable_SwitchModeFlagsWord2Screen = false;
        state.SetEnterVoiceTypeModeSwitchModeFlags = QStringList{"打字"_s};
        state.SetEnterVoiceTranslateModeSwitchModeFlags = QStringList{"翻译"_s};
        state.SetEnterVoiceCommandWordModeSwitchModeFlags = QStringList{"命令"_s};
        state.SetEnterVoiceSearchModeSwitchModeFlags = QStringList{"查找"_s};
    }

    void key(int number, bool pressed)
    {
        const mevo::InputReport report{1, 0x70, static_cast<unsigned char>(number),
                                       static_cast<unsigned char>(pressed ? 1 : 0)};
        for (const mevo::DispatchStep &step :
             mevo::dispatchKeyReport(report, mevo::DispatchFlags::of(state))) {
            if (step.kind == mevo::DispatchStep::Kind::MicDialogCall) {
                tip.CallMicDlgFunctionSlot(step.index);
            } else if (step.index == mevo::ReloadEngineChoice) {
                log.add("reload"_s);
            }
        }
    }
    void say(const char *word)
    {
        pipeline.HandleRecResult(QString::fromUtf8(word) + "。__over__"_s, session());
    }
    mevo::SessionContext session() const
    {
        mevo::SessionContext context = state.contextNow();
        context.engine.baidu = true;
        return context;
    }
    void click(const char *button) { tip.findChild<QPushButton *>(QLatin1String(button))->click(); }

    /// The mode that is on, as one letter; "?" when it is not exactly one, or the buttons tell another.
    QChar mode() const
    {
        const struct
        {
            char letter;
            bool on;
            const char *button;
            const char *picture;
        } modes[] = {
            {'T', state.VoiceTypeMode, "pushButton_VoiceStatus", "/VoiceStatus.png"},
            {'C', state.VoiceCommandWordMode, "pushButton_CommandStatus", "/CommandStatus.png"},
            {'S', state.VoiceSearchMode, "pushButton_SearchStatus", "/SearchStatus.png"},
        };
        QString on;
        for (const auto &row : modes) {
            on += row.on ? QString(QLatin1Char(row.letter)) : QString();
            const QString style = tip.findChild<QPushButton *>(QLatin1String(row.button))->styleSheet();
            if (style.contains(QLatin1String(row.picture)) != row.on) {
                return QLatin1Char('?');
            }
        }
        return on.size() == 1 ? on.at(0) : QLatin1Char('?');
    }
    void enter(QChar mode)
    {
        state.VoiceTypeMode = mode == QLatin1Char('T');
        state.VoiceCommandWordMode = mode == QLatin1Char('C');
        state.VoiceSearchMode = mode == QLatin1Char('S');
        tip.UpdateStatusButtons();
    }
    QString calls() const { return log.calls().join(QLatin1Char('|')); }

    void sendToScreen(const QString &text, const mevo::SessionContext &) override
    {
        log.add("screen "_s + text);
    }
    void trayMessage(const QString &, mevo::MessageIcon, int) override {}
    void restartAfterRecognition() override {}
    void stopRecording() override {}
    void endDeviceSession() override {}
    void updateMicWin(const QString &) override {}
    void endTipLatch() override {}
    void updateStatusButtons() override { tip.UpdateStatusButtons(); }
    bool translationDialogExists() const override { return translation.exists(); }
    bool translationDialogClosing() const override { return translation.isClosing(); }
    void showOnTranslationDialog(const QString &text, const mevo::SessionContext &) override
    {
        log.add("dialog "_s + text);
    }
    void showTranslationDialog() override { translation.show(); }
    void pressTranslateButton() override { mevo::toggleTranslation(state, translation); }
    void voiceSearch(const QString &) override {}
    bool runCommandWord(const QString &, bool, const mevo::SessionContext &) override { return true; }
    void reloadEngineChoice() override
    {
        // It may wait for the backend: the next press must not be refused meanwhile.
        log.add(state.ResultIdle ? "reload"_s : "reload while busy"_s);
    }

    CallLog log;
    MainState state;
    NoHost host;
    MicTipDialog tip{state, host};
    FakeTranslation translation{log};
    mevo::ResultPipeline pipeline{state, *this};
};

using Event = std::function<void(Desk &)>;

Event key(int number, bool pressed)
{
    return [=](Desk &desk) { desk.key(number, pressed); };
}
Event word(const char *text)
{
    return [=](Desk &desk) { desk.say(text); };
}
Event typedWord(const char *text, bool inputMethod = false)
{
    return [=](Desk &desk) {
        desk.state.Enable_SwitchModeFlagsWord2Screen = true;
        desk.state.LocalEnableASR3 = inputMethod;
        desk.say(text);
    };
}
Event button(const char *name)
{
    return [=](Desk &desk) { desk.click(name); };
}
const Event statusOfTranslation = [](Desk &desk) { desk.tip.pushButton_TransStatus_clicked(); };
const Event translateButton = [](Desk &desk) { desk.pressTranslateButton(); };
const QString open = "create|show"_s;

} // namespace

class TestVoiceModes : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void everyEventInEveryMode_data()
    {
        // event, from, translating, to, translatingAfter, lastMode (what the restoring routine would bring
        // back), calls
        const Rows<Event, QChar, bool, QChar, bool, QChar, QString> add;

        /// `to`: the mode after it from T, C and S. `calls`: without and with translation, whose dialog is
        /// missing or visible then.
        const auto row = [&](const QByteArray &name, const Event &event, const char *to, bool saves,
                             const char *translate, const QString &calls, const QString &callsTranslating) {
            for (int mode = 0; mode < 3; ++mode) {
                for (const bool translating : {false, true}) {
                    const QChar from = QLatin1Char("TCS"[mode]);
                    add(rowName("%s from %c%s", name.constData(), from.toLatin1(), translating ? "+" : ""),
                        event, from, translating, QChar(QLatin1Char(to[mode])),
                        (translate[translating ? 1 : 0] == '1'), (saves ? from : QChar(QLatin1Char('S'))),
                        (translating ? callsTranslating : calls));
                }
            }
        };
        const QString reload = "reload"_s;
        const QString none;
        for (const int voiceKey : {1, 3}) {
            for (const bool pressed : {true, false}) {
                // The engine is chosen anew when the mode changes, and only then.
                const Event event = [=](Desk &desk) {
                    const bool typing = desk.state.VoiceTypeMode;
                    desk.key(voiceKey, pressed);
                    QCOMPARE(desk.calls(), typing ? none : reload);
                    desk.log.clear();
                };
                row("key " + QByteArray::number(voiceKey) + (pressed ? " down" : " up"), event, "TTT", false,
                    "01", none, none);
            }
        }
        row("key 2 down", key(2, true), "TTT", false, "11", open, none);
        row("key 2 up", key(2, false), "TTT", false, "11", open, none);
        row("key 6 down", key(6, true), "CCC", true, "01", reload, reload);
        row("key 6 up", key(6, false), "TCS", false, "01", none, none);
        row("key 14 down", key(14, true), "SSS", true, "01", reload, reload);
        row("key 14 up", key(14, false), "TCS", false, "01", none, none);
        row("key 8", key(8, true), "TCS", false, "01", none, none);
        row("key 16", key(16, true), "TCS", false, "01", none, none);

        row("type button", button("pushButton_VoiceStatus"), "TTT", false, "01", none, none);
        row("command button", button("pushButton_CommandStatus"), "CCC", false, "01", none, none);
        row("search button", button("pushButton_SearchStatus"), "SSS", false, "01", none, none);
        row("translation status", statusOfTranslation, "TCS", false, "11", open, "show"_s);
        row("translate button", translateButton, "TCS", false, "10", open, "destroy"_s);

        row("type word", word("打字"), "TTT", false, "01", reload, reload);
        row("command word", word("命令"), "CCC", false, "01", reload, reload);
        row("search word", word("查找"), "SSS", false, "01", reload, reload);
        row("translate word", word("翻译"), "TCT", false, "11", open, "show"_s);
        row("type word, typed", typedWord("打字"), "TTT", false, "01", "screen 打字|reload"_s,
            "dialog 打字|reload"_s);
        row("translate word, typed", typedWord("翻译"), "TCT", false, "11", open + "|dialog 翻译"_s,
            "show|dialog 翻译"_s);
        row("search word beside an input method", typedWord("查找", true), "SSS", false, "01", reload,
            reload);

        const Event restore = [](Desk &desk) {
            mevo::restoreLastModes(desk.state);
            desk.tip.UpdateStatusButtons();
        };
        row("restored", restore, "SSS", false, "01", none, none);
        const Event load = [](Desk &desk) { mevo::saveLastModes(desk.state); };
        row("saved", load, "TCS", true, "01", none, none);
    }

    void everyEventInEveryMode()
    {
        const auto [event, from, translating, to, translatingAfter, lastMode, calls] =
            rowOf<Event, QChar, bool, QChar, bool, QChar, QString>();
        Desk desk;
        desk.enter(QLatin1Char('S'));
        mevo::saveLastModes(desk.state);
        desk.enter(from);
        desk.state.VoiceTranslateMode = translating;
        desk.translation.dialog = translating ? Dialog::Visible : Dialog::Missing;
        event(desk);
        QCOMPARE(desk.mode(), to);
        QCOMPARE(desk.state.VoiceTranslateMode.load(), translatingAfter);
        QCOMPARE(desk.calls(), calls);
        mevo::restoreLastModes(desk.state);
        desk.tip.UpdateStatusButtons();
        QCOMPARE(desk.mode(), lastMode);
    }

    void theDialogAndTheModeGoTogether_data()
    {
        const Rows<Dialog, Event, QString> add; // dialog, event, calls (the event's, then those of a text)
        const struct
        {
            const char *name;
            Event event;
        } events[] = {{"key 2", key(2, true)},
                      {"status", statusOfTranslation},
                      {"button", translateButton},
                      {"word", word("翻译")}};
        for (const auto &row : events) {
            add(rowName("%s shows a hidden one", row.name), Dialog::Hidden, row.event, "show|dialog 好"_s);
            add(rowName("%s, and none can be made", row.name), Dialog::Impossible, row.event,
                "create|screen 好"_s);
        }
    }

    /// No text gets lost in a translation that nobody shows.
    void theDialogAndTheModeGoTogether()
    {
        const auto [dialog, event, calls] = rowOf<Dialog, Event, QString>();
        Desk desk;
        desk.enter(QLatin1Char('T'));
        desk.translation.dialog = dialog;
        event(desk);
        QCOMPARE(desk.state.VoiceTranslateMode.load(), dialog == Dialog::Hidden);
        desk.say("好");
        QCOMPARE(desk.calls(), calls);
    }
};

QTEST_MAIN(TestVoiceModes)
#include "tst_voice_modes.moc"
