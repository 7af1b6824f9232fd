#pragma once

#include <QString>

namespace mevo {

/// The clipboard's text, and the text that is selected in a window. hasText() may be asked from any thread,
/// the rest belongs to the GUI thread.
class Clipboard
{
public:
    virtual ~Clipboard() = default;
    /// Offers a text that is to be pasted at once, by whatever key: also as the selection.
    virtual void setText(const QString &text) = 0;
    /// Puts a text there that waits for the user: one that was there before, or that he copies. What is
    /// selected in another program stays selected.
    virtual void putBack(const QString &text) = 0;
    virtual QString text() const = 0;
    virtual void clear() = 0;
    virtual bool hasText() const = 0;
    /// How often something was put there or taken away so far, by whichever program.
    virtual int changes() const = 0;
    /// Whether anybody may have read what setText() put there last. False only where it is sure that nobody
    /// has.
    virtual bool mayHaveBeenRead() const = 0;
    /// What another program holds as selected (the X11 primary selection); empty where there is no such thing
    /// or it is ours.
    virtual QString selection() const = 0;
};

} // namespace mevo
