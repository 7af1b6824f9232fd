#pragma once

#include <QObject>
#include <QPoint>
#include <QTimer>
#include <QWidget>

#include <vector>

namespace mevo {

class OwnWindows;

/// Makes a top-level widget stand beside the user's work on any desktop: it never takes the focus, is in no
/// task bar or window switcher, stands where it was put although window managers shift what they frame, and
/// is cut to what is painted where nothing composites. Belongs to its widget.
class CompanionWindow : public QObject
{
    Q_OBJECT

public:
    /// `desktop` must outlive the widget. To be made before the widget is first shown.
    CompanionWindow(QWidget *window, OwnWindows &desktop);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    void aboutToShow();
    /// Compares where the window was put with where it stands, and sees to the difference.
    void checkPlace();
    void shape();

    QWidget *m_window;
    OwnWindows &m_desktop;
    QTimer m_settle;
    QTimer m_shapeSoon; ///< after a painting
    QPoint m_wanted;
    bool m_placed = false;   ///< m_wanted counts
    bool m_settling = false; ///< the window manager may still shift the window
    int m_checks = 0;        ///< of this showing
    int m_moves = 0;         ///< asked for in this showing
    bool m_painting = false;
    std::vector<QRect> m_shape; ///< in force; none for a whole window
};

} // namespace mevo
