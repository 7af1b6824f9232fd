#pragma once

#include "platform/Notifications.h"
#include "platform/WindowSystem.h"

#include <QString>

namespace mevo {

/// What a voice session asks of the rest of the program.
class SessionPort
{
public:
    virtual ~SessionPort() = default;

    virtual qint64 monotonicMs() const = 0;
    /// Blocks; the waits between device-typed keys are part of their timing.
    virtual void sleepMs(int milliseconds) = 0;
    virtual void trayMessage(const QString &text, MessageIcon icon, int milliseconds) = 0;
    virtual void logReport(const QString &line) = 0;

    virtual void clearClipboard() = 0;
    virtual void saveFocusWindow() = 0;
    virtual void raiseBar() = 0;
    virtual void hideBar() = 0;
    /// Moves the bar to its saved position, or to the given distance from the screen's right and bottom
    /// edge when none is saved.
    virtual void placeBar(int fromRight, int fromBottom) = 0;

    virtual void showTipWindow(bool longPressStart) = 0;
    virtual void hideTipWindow() = 0;
    /// Sets the tip window's picture, a path below ":/rec/".
    virtual void updateMicWin(const QString &picture) = 0;

    /// Forgets partial results and moves their window to the caret, when dynamic correction is on.
    virtual void preparePartialResults() = 0;
    /// The translation dialog exists and does not record by itself.
    virtual bool translationDialogTakesKeys() const = 0;

    virtual void recordStart() = 0;
    virtual void recordStop() = 0;

    virtual WindowId findInputMethodWindow() = 0;
    /// Closes the input method's window where this program has opened it and its method takes a close; the
    /// flags of the window follow.
    virtual void leaveInputMethod() = 0;
    /// Finds out the installed XunFei input method's version and starts its window.
    virtual void startXunFeiInputMethod() = 0;
    /// Starts a program on its own, with no arguments.
    virtual void startProgram(const QString &path) = 0;
    virtual bool isProgramRunning(const QString &imageName) = 0;
    /// Looks for a window of this class, as the program that was started will open it; tells the session when
    /// it has come, or that it has not.
    virtual void awaitInputMethodWindow(const QString &windowClass) = 0;
    /// Writes that this program started the input method.
    virtual void markInputMethodStarted() = 0;
    /// Types a key through the receiver's keyboard; nothing without a receiver.
    virtual void sendDeviceKey(int modifiers, int usage) = 0;
    /// Types the custom input method's hot key, down and up.
    virtual void tapCustomKey() = 0;
    /// Starts the timer after which a third-party result is looked for on the clipboard (1000 ms).
    virtual void startPasteContentTimer() = 0;
    /// Starts the timer after which the input method's hot key is tapped again (200 ms).
    virtual void startTapTimer() = 0;
};

} // namespace mevo
