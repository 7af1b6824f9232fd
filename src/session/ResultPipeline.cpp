#include "session/ResultPipeline.h"

#include "commands/DirectWords.h"
#include "session/SessionMachine.h"
#include "session/VoiceModes.h"

#include <QCoreApplication>
#include <QDebug>

namespace mevo {

ResultPipeline::ResultPipeline(MainState &state, PipelinePort &port)
    : m_state(state)
    , m_port(port)
{
}

void ResultPipeline::showRecText(const QString &text)
{
    if (isOverLimitText(text)) {
        m_port.sendToScreen(withoutOverLimitCode(text));
        m_state.PartialResultCount = 0;
        m_state.RecTextBuffer.clear();
        m_port.trayMessage(
            QCoreApplication::translate(
                "Session",
                "当天语音使用识别量已超限! 如当天继续使用，建议切到讯飞语音输入法或搜狗语音输入法"),
            MessageIcon::Information, 2000);
        return;
    }
    m_port.restartAfterRecognition();
    if (text.isEmpty()) {
        return;
    }
    if (text.contains(QLatin1String(autoOverMarker))) {
        endByEngine();
        return;
    }
    // The engine flags exclude each other in normal use; nothing here depends on it.
    if (m_port.usesTencent()) {
        HandleRecResult(text);
    }
    if (m_port.usesXunFei()) {
        HandleRecResult(text);
    }
    if (m_port.usesBaidu()) {
        HandleRecResult(text);
    }
}

void ResultPipeline::endByEngine()
{
    m_state.QuickReleaseCount = 0;
    m_state.Recording = false;
    m_port.endDeviceSession();
    m_port.endTipLatch();
    m_port.updateMicWin(QLatin1String(pictures::micIdle));
    m_state.PartialResultCount = 0;
    m_state.RecTextBuffer.clear();
}

void ResultPipeline::HandleRecResult(const QString &text)
{
    if (handleMarker(text)) {
        return;
    }
    m_state.ResultIdle = false;
    m_port.updateMicWin(QLatin1String(pictures::micIdle));
    m_port.endTipLatch();

    const QString out = withoutOverMarker(text);
    m_state.RecTextBuffer += out;
    const ResultText result = makeResultText(m_state.RecTextBuffer, out, m_state.AddPunctuationWhenEnd,
                                             m_port.usesBaidu() || m_port.usesTencent());
    m_state.RecTextBuffer.clear();
    const char *const destination = route(result);
    m_state.ResultIdle = true;
    qInfo("Result: %d characters, %s", result.out.size(), destination); // never the text itself
}

bool ResultPipeline::handleMarker(const QString &text)
{
    struct Marker
    {
        const char16_t *text;
        const char16_t *typed;
        int times;
    };
    static constexpr Marker markers[] = {
        {u"__over__", u"", 0},
        {u"。__over__", u"。", 2}, // kept: producers count on two
        {u"？__over__", u"？", 1},
        {u"！__over__", u"！", 1},
    };
    for (const Marker &marker : markers) {
        if (text == QString::fromUtf16(marker.text)) {
            for (int i = 0; i < marker.times; ++i) {
                m_port.sendToScreen(QString::fromUtf16(marker.typed));
            }
            m_state.RecTextBuffer.clear();
            return true;
        }
    }
    return false;
}

const char *ResultPipeline::route(const ResultText &received)
{
    ResultText text = received;
    bool sent = false;
    if (matchDirectCommand(text, sent)) {
        if (!m_state.VoiceCommandWordMode) {
            m_port.updateStatusButtons();
        }
        runCommand(text, sent);
        m_state.OneShotCommandWord = false;
        return "direct command";
    }
    if (matchDirectSearch(text)) {
        return "direct search";
    }
    if (matchModeSwitch(text)) {
        return "mode word";
    }
    const char *const destination = routeByMode(text);
    m_state.OneShotCommandWord = false;
    return destination;
}

const char *ResultPipeline::routeByMode(const ResultText &text)
{
    if (m_state.OneShotCommandWord || m_state.VoiceCommandWordMode) {
        if (m_state.OneShotCommandWord && !m_state.VoiceCommandWordMode) {
            m_port.updateStatusButtons();
        }
        runCommand(text, false);
        return "command";
    }
    if (m_state.VoiceSearchMode) {
        m_port.voiceSearch(text.match);
        return "search";
    }
    if (m_state.VoiceTranslateMode) {
        if (m_port.translationDialogExists()) {
            sendToDialogOrScreen(text.out);
        }
        return "translation";
    }
    m_port.sendToScreen(text.out);
    return "typing";
}

bool ResultPipeline::matchDirectCommand(ResultText &text, bool &sent)
{
    if (!m_state.Enable_CommandWord_Direct) {
        return false;
    }
    const int prefix = directPrefixLength(m_state.CmdFlags_Contents_Driect, text.match);
    if (prefix == 0) {
        return false;
    }
    text.match = text.match.mid(prefix);
    if (m_state.Enable_CmdFlagsWord2Screen_Direct && !m_port.translationDialogExists()) {
        m_port.sendToScreen(text.out);
        sent = true;
    }
    return true;
}

bool ResultPipeline::matchDirectSearch(const ResultText &text)
{
    if (!m_state.Enable_Search_Direct) {
        return false;
    }
    const int prefix = directPrefixLength(m_state.SearchFlags_Contents_Driect, text.match);
    if (prefix == 0) {
        return false;
    }
    if (m_state.Enable_SearchFlagsWord2Screen_Direct && !m_port.translationDialogExists() &&
        !m_state.ThirdPartyActive) {
        m_port.sendToScreen(text.out);
    }
    m_port.voiceSearch(text.match.mid(prefix));
    return true;
}

bool ResultPipeline::matchModeSwitch(const ResultText &text)
{
    if (!m_state.Enable_SwitchFunctionMode) {
        return false;
    }
    if (m_state.SetEnterVoiceTypeModeSwitchModeFlags.contains(text.match)) {
        enterMode(m_state, &SessionState::VoiceTypeMode);
    } else if (m_state.SetEnterVoiceTranslateModeSwitchModeFlags.contains(text.match)) {
        m_state.VoiceTranslateMode = true;
        m_state.VoiceSearchMode = false;
        if (m_port.translationDialogExists()) {
            m_port.showTranslationDialog(); // the button would take a visible one away
        } else {
            m_port.pressTranslateButton();
        }
        m_port.updateStatusButtons();
        showSwitchWord(text.out);
        return true; // translating leaves the engine choice alone
    } else if (m_state.SetEnterVoiceCommandWordModeSwitchModeFlags.contains(text.match)) {
        enterMode(m_state, &SessionState::VoiceCommandWordMode);
    } else if (m_state.SetEnterVoiceSearchModeSwitchModeFlags.contains(text.match)) {
        enterMode(m_state, &SessionState::VoiceSearchMode);
    } else {
        return false;
    }
    m_port.updateStatusButtons();
    showSwitchWord(text.out);
    m_state.ResultIdle = true; // the reload may wait for the backend, and the next press need not
    m_port.reloadEngineChoice();
    return true;
}

void ResultPipeline::showSwitchWord(const QString &out)
{
    if (!m_state.Enable_SwitchModeFlagsWord2Screen || m_state.LocalEnableASR3) {
        return;
    }
    if (m_port.translationDialogExists()) {
        sendToDialogOrScreen(out);
    } else {
        m_port.sendToScreen(out);
    }
}

void ResultPipeline::runCommand(const ResultText &text, bool sent)
{
    const bool dialog = m_port.translationDialogExists();
    if (dialog) {
        if (!m_port.translationDialogClosing()) {
            m_port.showOnTranslationDialog(text.out);
            m_state.ResultIdle = true;
        } else if (!sent) {
            m_port.sendToScreen(text.out);
            sent = true;
        }
    }
    if (!m_port.runCommandWord(text.match, sent) && !sent && !dialog) {
        m_port.sendToScreen(text.out);
    }
}

void ResultPipeline::sendToDialogOrScreen(const QString &out)
{
    if (m_port.translationDialogClosing()) {
        m_port.sendToScreen(out);
    } else {
        m_state.ResultIdle = true;
        m_port.showOnTranslationDialog(out);
    }
}

} // namespace mevo
