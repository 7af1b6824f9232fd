#pragma once

#include <QString>

namespace mevo {

/// What the translation client asks of the main window.
class TranslationHost
{
public:
    virtual ~TranslationHost() = default;
    /// The allowance is used up: shows `text` under `title`, then ends the program. Called in the middle of a
    /// translation, whose result is still given: does both from the event loop. May come again before the
    /// end.
    virtual void translationLimitReached(const QString &title, const QString &text) = 0;
};

} // namespace mevo
