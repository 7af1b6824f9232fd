#pragma once

#include "platform/Notifications.h"
#include "state/SessionContext.h"

#include <QString>

namespace mevo {

/// What the result pipeline asks of the rest of the program.
class PipelinePort
{
public:
    virtual ~PipelinePort() = default;

    /// Types a text into the session's window, by its mode.
    virtual void sendToScreen(const QString &text, const SessionContext &session) = 0;
    virtual void trayMessage(const QString &text, MessageIcon icon, int milliseconds) = 0;
    /// Starts the after-recognition timer anew (5000 ms).
    virtual void restartAfterRecognition() = 0;
    /// Writes the usage counters and switches the microphone latch off, with a receiver connected.
    virtual void endDeviceSession() = 0;
    /// Closes the microphone of the session that records.
    virtual void stopRecording() = 0;
    virtual void updateMicWin(const QString &picture) = 0;
    /// Ends the tip window's latch, when it is set, and shows its status buttons again.
    virtual void endTipLatch() = 0;
    /// Shows the voice mode flags on the tip window.
    virtual void updateStatusButtons() = 0;

    virtual bool translationDialogExists() const = 0;
    virtual bool translationDialogClosing() const = 0;
    virtual void showOnTranslationDialog(const QString &text, const SessionContext &session) = 0;
    /// Shows the translation dialog that exists; a visible one stays as it is.
    virtual void showTranslationDialog() = 0;
    /// Does what a click on the bar's translate button does.
    virtual void pressTranslateButton() = 0;

    virtual void voiceSearch(const QString &text) = 0;
    /// Runs the command bound to a word; `sent` says that the word's text is on the screen already. False
    /// when no word matches.
    virtual bool runCommandWord(const QString &word, bool sent, const SessionContext &session) = 0;
    /// Applies the engine choice again; a change of mode may leave or enter third-party input.
    virtual void reloadEngineChoice() = 0;
};

} // namespace mevo
