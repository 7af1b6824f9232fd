#pragma once

#include "platform/WindowSystem.h"
#include "platform/linux/AtspiCaret.h"
#include "platform/linux/ScreenLock.h"
#include "platform/linux/X11Connection.h"

#include <QObject>
#include <QThread>

#include <memory>
#include <vector>

namespace mevo {

/// Windows of an X11 desktop. Texts are typed by a worker thread with a connection of its own.
class X11WindowSystem : public QObject, public WindowSystem
{
    Q_OBJECT

public:
    X11WindowSystem();
    ~X11WindowSystem() override;

    WindowId foregroundWindow() override;
    WindowId focusedWindow() override;
    bool keysGoNowhere() override;
    bool isWindow(WindowId window) override;
    void postText(WindowId window, const QString &text, PostDone done) override;
    void askWindow(WindowId window, int limitMs, std::function<void(PostStop)> done) override;
    bool canPostText() const override { return m_canPost; }
    bool activate(WindowId window) override;
    WindowId findWindow(const QString &windowClass, const QString &title) override;
    bool closeWindow(WindowId window) override;
    QString windowClass(WindowId window) override;
    QString windowTitle(WindowId window) override;
    std::optional<QRect> caretRectangle() override;
    void stackBelow(WindowId window, WindowId other) override;

private:
    class Worker;
    bool sendToRoot(WindowId window, const char *message, long first, long second);
    bool hasWindowManager() const;
    bool takesNoText(WindowId window) const;
    bool askToClose(WindowId window);
    std::vector<WindowId> topLevelWindows();

    X11Connection m_connection;
    ScreenLock m_lock;
    QThread m_thread;
    Worker *m_worker = nullptr;
    bool m_canPost = false;
    AtspiCaret m_caret;
};

} // namespace mevo
