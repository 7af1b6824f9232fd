#pragma once

#include "device/KeyInjection.h"

#include <QUrl>

namespace mevo {

/// What a command asks of the rest of the program.
class CommandPort
{
public:
    virtual ~CommandPort() = default;

    /// Opens an address, file or folder with whatever the desktop has for it. Returns at once; no answer.
    virtual void openUrl(const QUrl &url) = 0;
    virtual void sendToScreen(const QString &text) = 0;
    /// Types a key combination through the receiver; nothing without one.
    virtual void playKeys(const KeyCombination &keys) = 0;
};

} // namespace mevo
