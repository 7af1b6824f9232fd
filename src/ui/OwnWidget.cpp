#include "ui/OwnWidget.h"

#include <QWidget>

namespace mevo {

bool isOwnWindow(WindowId window)
{
    return window != 0 && QWidget::find(static_cast<WId>(window)) != nullptr;
}

} // namespace mevo
