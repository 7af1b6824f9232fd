#pragma once

namespace mevo {

/// The translation dialog as the voice session needs it.
class TranslationPort
{
public:
    virtual ~TranslationPort() = default;

    virtual bool exists() const = 0;
    virtual bool isVisible() const = 0; ///< false without a dialog
    /// The dialog is about to close and takes no more text.
    virtual bool isClosing() const = 0;
    /// It exists and the keyboard is not in its source pane, so that keys may mean a selection.
    virtual bool takesKeys() const = 0;

    /// Makes the dialog. False when there can be none; then nothing of it is left.
    virtual bool create() = 0;
    /// Shows it; a visible one stays as it is.
    virtual void show() = 0;
    /// Has it save its state and go.
    virtual void destroy() = 0;
};

} // namespace mevo
