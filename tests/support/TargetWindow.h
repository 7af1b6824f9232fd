#pragma once

#include "platform/WindowSystem.h"

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

/// A window of a program that nobody here wrote, to be typed into: xterm, mousepad (GTK) or featherpad
/// (Qt). What it holds is read back from it: a terminal logs what it receives, an editor is told to
/// save.
class TargetWindow
{
public:
    enum Kind { Xterm, Mousepad, Featherpad };

    TargetWindow(Kind kind, mevo::WindowSystem &windows);
    ~TargetWindow();

    /// Starts the program and waits for its window. False when it does not appear.
    bool start();
    /// Gives it the keyboard focus and waits until it has it.
    bool focus();
    mevo::WindowId topLevel() const { return m_topLevel; }
    /// The window inside that takes the keys, as focused last.
    mevo::WindowId focusedWindow() const { return m_focused; }
    /// Its content, once it is `expected` or the time is over.
    QString waitForText(const QString &expected, int timeoutMs = 8000);
    void stop();

private:
    QString read();
    QString filePath() const;

    Kind m_kind;
    mevo::WindowSystem &m_windows;
    QTemporaryDir m_folder;
    QProcess m_process;
    mevo::WindowId m_topLevel = 0;
    mevo::WindowId m_focused = 0;
};
