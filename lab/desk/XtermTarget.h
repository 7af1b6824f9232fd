#pragma once

#include "desk/TargetWindow.h"

namespace mevo::lab {

/// An xterm whose shell notes every byte that it is sent.
class XtermTarget : public TargetWindow
{
public:
    static std::unique_ptr<TargetWindow> start();
    QString peek() override;
    bool clear() override;

protected:
    using TargetWindow::TargetWindow;
    bool waitReady() override;
};

} // namespace mevo::lab
