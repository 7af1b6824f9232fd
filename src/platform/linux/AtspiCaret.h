#pragma once

#include <QRect>

#include <memory>
#include <optional>

namespace mevo {

/// Where the text caret stands in other programs, from the accessibility bus (AT-SPI 2). Programs are asked
/// to report their carets only after the first question, so that nobody pays for it who never asks. GUI
/// thread, whose event loop must be GLib's, as Qt's is on Linux desktops.
class AtspiCaret
{
public:
    AtspiCaret();
    ~AtspiCaret();
    AtspiCaret(const AtspiCaret &) = delete;
    AtspiCaret &operator=(const AtspiCaret &) = delete;

    /// The caret of the object that last took the focus or moved its caret, in screen pixels. None while
    /// nothing is known: at the first question, without an accessibility bus, for programs that do not speak
    /// to it. Each of up to
    /// four calls to a program that hangs costs 100 ms.
    std::optional<QRect> rectangle();

private:
    class Listener;
    std::unique_ptr<Listener> m_listener;
};

} // namespace mevo
