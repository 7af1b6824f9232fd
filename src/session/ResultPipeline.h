#pragma once

#include "session/MatchText.h"
#include "session/PipelinePort.h"
#include "state/MainState.h"

namespace mevo {

/// Takes every engine's text, tells markers and errors from words, and routes the words by mode: to the
/// screen, the translation dialog, a search, a mode switch or the command table. GUI thread only.
class ResultPipeline
{
public:
    ResultPipeline(MainState &state, PipelinePort &port);

    /// A text as an engine delivers it, with its markers. `session` is what was in force at its press.
    void showRecText(const QString &text, const SessionContext &session);
    /// A text that is known to be words, or one of the whole-text markers.
    void HandleRecResult(const QString &text, const SessionContext &session);

private:
    bool handleMarker(const QString &text, const SessionContext &session);
    void endByEngine(const SessionContext &session);
    bool ownsTipWindow(const SessionContext &session) const;
    void showThatSpeechEnded(const SessionContext &session);
    void finishOneShot(const SessionContext &session);
    /// Does what the text asks for, and answers what it was taken for, for the log.
    const char *route(const ResultText &text, const SessionContext &session);
    const char *routeByMode(const ResultText &text, const SessionContext &session);
    bool matchDirectCommand(ResultText &text, bool &sent, const SessionContext &session);
    bool matchDirectSearch(const ResultText &text, const SessionContext &session);
    bool matchModeSwitch(const ResultText &text, const SessionContext &session);
    void showSwitchWord(const QString &out, const SessionContext &session);
    void runCommand(const ResultText &text, bool sent, const SessionContext &session);
    void sendToDialogOrScreen(const QString &out, const SessionContext &session);

    MainState &m_state;
    PipelinePort &m_port;
};

} // namespace mevo
