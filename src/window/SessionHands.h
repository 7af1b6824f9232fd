#pragma once

#include "session/PipelinePort.h"
#include "session/SessionPort.h"

class MainWindow;

namespace mevo {

/// Carries out what a voice session decides.
class SessionHands : public SessionPort
{
public:
    explicit SessionHands(MainWindow &window)
        : m_window(window)
    {
    }

    qint64 monotonicMs() const override;
    void sleepMs(int milliseconds) override;
    void trayMessage(const QString &text, MessageIcon icon, int milliseconds) override;
    void logReport(const QString &line) override;
    void clearClipboard() override;
    void saveFocusWindow() override;
    void raiseBar() override;
    void hideBar() override;
    void placeBar(int fromRight, int fromBottom) override;
    void showTipWindow(bool longPressStart) override;
    void hideTipWindow() override;
    void updateMicWin(const QString &picture) override;
    void preparePartialResults() override;
    bool translationDialogTakesKeys() const override;
    void recordStart() override;
    void recordStop() override;
    WindowId findInputMethodWindow() override;
    void leaveInputMethod() override;
    void startXunFeiInputMethod() override;
    void startProgram(const QString &path) override;
    bool isProgramRunning(const QString &imageName) override;
    void awaitInputMethodWindow(const QString &windowClass) override;
    void markInputMethodStarted() override;
    void sendDeviceKey(int modifiers, int usage) override;
    void tapCustomKey() override;
    void startPasteContentTimer() override;
    void startTapTimer() override;
    /// Types the taps whose timers have not run out, each after its time.
    void finishTaps();
    /// An input method that was released may still copy a text that is to be dealt with here.
    bool awaitsPasteContent() const;
    /// Takes what it has copied so far, whose timer has not run out; nothing is awaited any more.
    void finishPasteContent();

private:
    void tapNow(int taps);
    void takePasteContent();
    void lookForInputMethod(const QString &windowClass, int number, qint64 until);

    MainWindow &m_window;
    int m_awaited = 0;       ///< counts the windows that have been waited for
    int m_taps = 0;          ///< of the input method's key that are still to come
    int m_pasteContents = 0; ///< releases whose text may still come by the clipboard
};

/// Carries out what becomes of a recognised text.
class PipelineHands : public PipelinePort
{
public:
    explicit PipelineHands(MainWindow &window)
        : m_window(window)
    {
    }

    void sendToScreen(const QString &text, const SessionContext &session) override;
    void trayMessage(const QString &text, MessageIcon icon, int milliseconds) override;
    void restartAfterRecognition() override;
    void endDeviceSession() override;
    void stopRecording() override;
    void updateMicWin(const QString &picture) override;
    void endTipLatch() override;
    void updateStatusButtons() override;
    bool translationDialogExists() const override;
    bool translationDialogClosing() const override;
    void showOnTranslationDialog(const QString &text, const SessionContext &session) override;
    void showTranslationDialog() override;
    void pressTranslateButton() override;
    void voiceSearch(const QString &text) override;
    bool runCommandWord(const QString &word, bool sent, const SessionContext &session) override;
    void reloadEngineChoice() override;

private:
    MainWindow &m_window;
};

} // namespace mevo
