#pragma once

#include <QElapsedTimer>
#include <QObject>

class QMenu;

namespace mevo {

/// Opens a menu again that the toolkit has closed by mistake. Up to 0.4 s after a menu has closed the toolkit
/// notices that the keyboard has gone back to another program, and closes every menu that is open by then:
/// also one that the user has just opened. Belongs to the menu.
class LastingMenu : public QObject
{
public:
    explicit LastingMenu(QMenu *menu);

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    QMenu *m_menu;
    bool m_inDanger = false; ///< the toolkit thought that we have the keyboard when it was opened
    QElapsedTimer m_open;
};

} // namespace mevo
