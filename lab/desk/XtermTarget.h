#pragma once

#include "desk/TargetWindow.h"

namespace mevo::lab {

/// A terminal whose shell notes every byte that it is sent: xterm, or one that copies by Ctrl+Shift+C.
class XtermTarget : public TargetWindow
{
public:
    static std::unique_ptr<TargetWindow> start();
    static std::unique_ptr<TargetWindow> startLxterminal();
    QString peek() override;
    bool clear() override;

protected:
    using TargetWindow::TargetWindow;
    bool waitReady() override;

private:
    /// `options` end with the one that a command stands behind.
    static std::unique_ptr<TargetWindow> start(const QString &program, const QStringList &options);
};

} // namespace mevo::lab
