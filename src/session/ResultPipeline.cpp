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

void ResultPipeline::showRecText(const QString &text, const SessionContext &session)
{
    if (isOverLimitText(text)) {
        m_port.sendToScreen(withoutOverMarker(text), session);
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
        endByEngine(session);
        return;
    }
    // The engine flags exclude each other in normal use; nothing here depends on it.
    for (const bool used : {session.engine.tencent, session.engine.xunFei, session.engine.baidu}) {
        if (used) {
            HandleRecResult(text, session);
        }
    }
}

void ResultPipeline::endByEngine(const SessionContext &session)
{
    m_state.QuickReleaseCount = 0;
    if (ownsTipWindow(session) && m_state.Recording.exchange(false)) {
        m_port.stopRecording();
    }
    m_port.endDeviceSession();
    showThatSpeechEnded(session);
    m_state.PartialResultCount = 0;
    m_state.RecTextBuffer.clear();
}

/// The tip window, its latch and the open microphone belong to the newest session while that one records.
bool ResultPipeline::ownsTipWindow(const SessionContext &session) const
{
    return session.number == 0 || session.number == m_state.NewestSession;
}

void ResultPipeline::showThatSpeechEnded(const SessionContext &session)
{
    if (ownsTipWindow(session)) {
        m_port.endTipLatch();
    }
    if (ownsTipWindow(session) || !m_state.Recording) {
        m_port.updateMicWin(QLatin1String(pictures::micIdle));
    }
}

void ResultPipeline::finishOneShot(const SessionContext &session)
{
    if (ownsTipWindow(session)) {
        m_state.OneShotCommandWord = false;
    }
}

void ResultPipeline::HandleRecResult(const QString &text, const SessionContext &session)
{
    if (handleMarker(text, session)) {
        return;
    }
    m_state.ResultIdle = false;
    showThatSpeechEnded(session);

    const QString out = withoutOverMarker(text);
    m_state.RecTextBuffer += out;
    const ResultText result = makeResultText(m_state.RecTextBuffer, out, m_state.AddPunctuationWhenEnd,
                                             session.engine.baidu || session.engine.tencent);
    m_state.RecTextBuffer.clear();
    const char *const destination = route(result, session);
    m_state.ResultIdle = true;
    qInfo("Result: %d characters, %s", result.out.size(), destination); // never the text itself
}

bool ResultPipeline::handleMarker(const QString &text, const SessionContext &session)
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
                m_port.sendToScreen(QString::fromUtf16(marker.typed), session);
            }
            m_state.RecTextBuffer.clear();
            return true;
        }
    }
    return false;
}

const char *ResultPipeline::route(const ResultText &received, const SessionContext &session)
{
    ResultText text = received;
    bool sent = false;
    if (matchDirectCommand(text, sent, session)) {
        if (!session.commandMode) {
            m_port.updateStatusButtons();
        }
        runCommand(text, sent, session);
        finishOneShot(session);
        return "direct command";
    }
    if (matchDirectSearch(text, session)) {
        return "direct search";
    }
    if (matchModeSwitch(text, session)) {
        return "mode word";
    }
    const char *const destination = routeByMode(text, session);
    finishOneShot(session);
    return destination;
}

const char *ResultPipeline::routeByMode(const ResultText &text, const SessionContext &session)
{
    if (session.oneShotCommand || session.commandMode) {
        if (session.oneShotCommand && !session.commandMode) {
            m_port.updateStatusButtons();
        }
        runCommand(text, false, session);
        return "command";
    }
    if (session.searchMode) {
        m_port.voiceSearch(text.match);
        return "search";
    }
    // A dialog that was closed since the press takes no text; then it is typed.
    if (session.translateMode && m_state.VoiceTranslateMode) {
        if (m_port.translationDialogExists()) {
            sendToDialogOrScreen(text.out, session);
        }
        return "translation";
    }
    m_port.sendToScreen(text.out, session);
    return "typing";
}

bool ResultPipeline::matchDirectCommand(ResultText &text, bool &sent, const SessionContext &session)
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
        m_port.sendToScreen(text.out, session);
        sent = true;
    }
    return true;
}

bool ResultPipeline::matchDirectSearch(const ResultText &text, const SessionContext &session)
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
        m_port.sendToScreen(text.out, session);
    }
    m_port.voiceSearch(text.match.mid(prefix));
    return true;
}

bool ResultPipeline::matchModeSwitch(const ResultText &text, const SessionContext &session)
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
        showSwitchWord(text.out, session);
        return true; // translating leaves the engine choice alone
    } else if (m_state.SetEnterVoiceCommandWordModeSwitchModeFlags.contains(text.match)) {
        enterMode(m_state, &SessionState::VoiceCommandWordMode);
    } else if (m_state.SetEnterVoiceSearchModeSwitchModeFlags.contains(text.match)) {
        enterMode(m_state, &SessionState::VoiceSearchMode);
    } else {
        return false;
    }
    m_port.updateStatusButtons();
    showSwitchWord(text.out, session);
    m_state.ResultIdle = true; // the reload may wait for the backend, and the next press need not
    m_port.reloadEngineChoice();
    return true;
}

void ResultPipeline::showSwitchWord(const QString &out, const SessionContext &session)
{
    if (!m_state.Enable_SwitchModeFlagsWord2Screen || m_state.LocalEnableASR3) {
        return;
    }
    if (m_port.translationDialogExists()) {
        sendToDialogOrScreen(out, session);
    } else {
        m_port.sendToScreen(out, session);
    }
}

void ResultPipeline::runCommand(const ResultText &text, bool sent, const SessionContext &session)
{
    const bool dialog = m_port.translationDialogExists();
    if (dialog) {
        if (!m_port.translationDialogClosing()) {
            m_port.showOnTranslationDialog(text.out, session);
            m_state.ResultIdle = true;
        } else if (!sent) {
            m_port.sendToScreen(text.out, session);
            sent = true;
        }
    }
    if (!m_port.runCommandWord(text.match, sent, session) && !sent && !dialog) {
        m_port.sendToScreen(text.out, session);
    }
}

void ResultPipeline::sendToDialogOrScreen(const QString &out, const SessionContext &session)
{
    if (m_port.translationDialogClosing()) {
        m_port.sendToScreen(out, session);
    } else {
        m_state.ResultIdle = true;
        m_port.showOnTranslationDialog(out, session);
    }
}

} // namespace mevo
