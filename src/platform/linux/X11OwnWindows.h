#pragma once

#include "platform/OwnWindows.h"
#include "platform/linux/X11Connection.h"
#include "platform/linux/X11StillWindow.h"

#include <QAbstractNativeEventFilter>
#include <QObject>
#include <QPointer>
#include <QSet>

namespace mevo {

/// Windows of ours on an X11 desktop. A second connection listens: to the root window's active window, and to
/// the selection that a compositor owns.
class X11OwnWindows : public QObject, public OwnWindows, public QAbstractNativeEventFilter
{
    Q_OBJECT

public:
    X11OwnWindows();

    void neverTakeFocus(WindowId window) override;
    void takeFocus(WindowId window) override;
    void keepOutOfLists(WindowId window) override;
    std::optional<QPoint> place(WindowId window) override;
    void moveTo(WindowId window, const QPoint &place) override;
    void beginSlide(WindowId window, const QImage &look) override;
    void endSlide(WindowId window) override;
    bool nativeEventFilter(const QByteArray &type, void *message, long *result) override;
    bool isComposited() override { return m_composited; }
    void whenCompositingChanges(QObject *context, std::function<void()> handler) override;
    void setShape(WindowId window, const std::vector<QRect> &rectangles) override;

private:
    struct Listener
    {
        QPointer<QObject> context;
        std::function<void()> handler;
    };

    bool isReady(WindowId window) const;
    void sendToRoot(WindowId window, const char *message, const std::vector<unsigned long> &data) const;
    void setInputHint(WindowId window, bool input) const;
    void readEvents();
    void activeWindowChanged();
    void setComposited(bool composited);

    X11Connection m_connection;
    X11Connection m_events;
    unsigned long m_compositor = 0;   ///< the atom of the compositor's selection
    unsigned long m_activeWindow = 0; ///< the atom of the root's property
    int m_selectionEvent = -1;        ///< the X event that tells of a selection's new owner
    QSet<WindowId> m_withoutFocus;
    QSet<WindowId> m_sliding;
    X11StillWindow m_still;    ///< one of those that slide
    WindowId m_lastActive = 0; ///< that was not one of ours
    bool m_composited = false;
    std::vector<Listener> m_listeners;
};

} // namespace mevo
