#include "ui/OwnWidget.h"

#include <QWidget>

namespace mevo {

bool isOwnWindow(WindowId window)
{
    return window != 0 && QWidget::find(static_cast<WId>(window)) != nullptr;
}

bool isOwnWithoutField(WindowId window)
{
    const QWidget *const own = window != 0 ? QWidget::find(static_cast<WId>(window)) : nullptr;
    if (own == nullptr) {
        return false;
    }
    const QWidget *const focused = own->window()->focusWidget();
    return focused == nullptr || !focused->isEnabled() || !focused->testAttribute(Qt::WA_InputMethodEnabled);
}

} // namespace mevo
