#pragma once

#include "desk/TargetWindow.h"
#include "receiver/XTestKeyboard.h"

namespace lab {
class LabHttpServer;
}

namespace mevo::lab {

/// A text area on a page in Chromium; the page tells its text to a server of ours at each change.
class BrowserTarget : public TargetWindow
{
public:
    static std::unique_ptr<TargetWindow> start();
    ~BrowserTarget() override;
    QString peek() override { return m_text; }
    bool clear() override;

protected:
    bool waitReady() override;

private:
    BrowserTarget(std::unique_ptr<Desktop> desktop, std::unique_ptr<XTestKeyboard> keyboard);

    std::unique_ptr<XTestKeyboard> m_keyboard;
    std::unique_ptr<::lab::LabHttpServer> m_server;
    QString m_text;
};

} // namespace mevo::lab
