#pragma once

#include "desk/Desktop.h"

#include <QMap>
#include <QProcess>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <memory>

namespace mevo::lab {

class XTestKeyboard;

/// A window of an ordinary program that text is typed into, and the text that it has taken.
///
/// Needs a display with a window manager. Waiting functions run the event loop.
class TargetWindow
{
public:
    /// "xterm", "mousepad" (GTK 3), "featherpad" (Qt 5): those of every desk.
    static QStringList kinds();
    /// Further ones that are installed here: "kate", "gnome-text-editor" (GTK 4), "lxterminal", "chromium" (a
    /// text area), "libreoffice" (Writer with its own widgets), "libreoffice-gtk3" (with those of GTK).
    static QStringList furtherKinds();

    /// Starts a target and waits until it takes keys. Null on failure (a log line says why).
    static std::unique_ptr<TargetWindow> start(const QString &kind);
    virtual ~TargetWindow();
    TargetWindow(const TargetWindow &) = delete;
    TargetWindow &operator=(const TargetWindow &) = delete;

    QString kind() const { return m_kind; }
    Desktop::Window windowId() const { return m_window; }
    qint64 processId() const { return m_process.processId(); }
    bool hasFocus() const;
    /// Gives it the keyboard focus. False when it does not get it.
    bool focus();
    /// The text that it has taken, once it has at least `minLength` characters and has stopped growing, or
    /// when `timeoutMs` has run out. Editors are given the focus for it and save their text; a terminal
    /// shows every byte it was sent, Return as "\r", other keys as control characters and sequences.
    QString text(int minLength, int timeoutMs);
    /// The text as it stands now. Editors are given the focus for it.
    virtual QString peek() = 0;
    /// Empties it. Editors are given the focus for it.
    virtual bool clear() = 0;
    /// Ends the program.
    void stop();

protected:
    TargetWindow(QString kind, std::unique_ptr<Desktop> desktop);

    /// Starts the program with its settings below folder(), and waits for its window. `environment` is added
    /// to what it inherits.
    bool launch(const QString &program, const QStringList &arguments,
                const QMap<QString, QString> &environment = {});
    /// Waits until the window takes keys. False when it never does.
    virtual bool waitReady() = 0;
    const Desktop &desktop() const { return *m_desktop; }
    QString folder() const { return m_folder.path(); }
    QString textFile() const { return m_folder.filePath(QStringLiteral("text.txt")); }
    QByteArray textFileContent() const;

private:
    QString m_kind;
    std::unique_ptr<Desktop> m_desktop;
    QTemporaryDir m_folder;
    QProcess m_process;
    Desktop::Window m_window = 0;
};

} // namespace mevo::lab
