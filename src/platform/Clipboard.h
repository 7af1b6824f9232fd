#pragma once

#include <QString>

namespace mevo {

/// The clipboard's text. hasText() may be asked from any thread, the rest belongs to the GUI thread.
class Clipboard
{
public:
    virtual ~Clipboard() = default;
    virtual void setText(const QString &text) = 0;
    virtual QString text() const = 0;
    virtual void clear() = 0;
    virtual bool hasText() const = 0;
};

} // namespace mevo
