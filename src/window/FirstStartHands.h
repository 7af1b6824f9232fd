#pragma once

#include "ui/FirstStart.h"

#include <QByteArray>
#include <QObject>
#include <QPointer>
#include <QTimer>

class FirstStartDialog;
class MainWindow;

namespace mevo {

/// The window that helps a new user: by itself at the first start if something is missing, and whenever it is
/// asked for.
class FirstStartHands : public QObject
{
public:
    explicit FirstStartHands(MainWindow &window);

    /// All has been read that there is to read: a first start is looked at, a moment later.
    void startIsOver();
    /// The receiver has not been opened; `path` is the device file that was there, empty for none. A user who
    /// has no right to it is told, unless the window says so or is about to.
    void receiverNotOpened(const QByteArray &path);
    /// Shows it and gives it the keyboard.
    void open();

    /// How long after the start it comes, so that it takes none of the start's time.
    static inline int waitMs = 2000;

private:
    /// What is asked of the system, which may take its time.
    struct Hardware
    {
        bool receiverRefused = false;
        bool microphone = false;
    };
    /// What happens once the hardware has been looked at; the later one counts for more.
    enum class Wish { Refresh, Consider, Open };

    void consider();
    void considerOnceMore();
    void look(Wish wish);
    void looked(const Hardware &hardware);
    void show(bool activate);
    void remember();
    bool isWindowToCome() const;
    void help(FirstStartHelp help);
    FirstStartFacts facts() const;

    MainWindow &m_window;
    QPointer<FirstStartDialog> m_dialog;
    QTimer m_again; ///< for what changes while it is shown
    Hardware m_hardware;
    Wish m_wish = Wish::Refresh;
    bool m_looking = false;
    bool m_considered = false;
    bool m_decided = false; ///< whether the window comes by itself
};

} // namespace mevo
