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

    /// A text as an engine delivers it, with its markers.
    void showRecText(const QString &text);
    /// A text that is known to be words, or one of the whole-text markers.
    void HandleRecResult(const QString &text);

private:
    bool handleMarker(const QString &text);
    void endByEngine();
    /// Does what the text asks for, and answers what it was taken for, for the log.
    const char *route(const ResultText &text);
    const char *routeByMode(const ResultText &text);
    bool matchDirectCommand(ResultText &text, bool &sent);
    bool matchDirectSearch(const ResultText &text);
    bool matchModeSwitch(const ResultText &text);
    void showSwitchWord(const QString &out);
    void runCommand(const ResultText &text, bool sent);
    void sendToDialogOrScreen(const QString &out);

    MainState &m_state;
    PipelinePort &m_port;
};

} // namespace mevo
