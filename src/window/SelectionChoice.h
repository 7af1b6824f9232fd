#pragma once

#include <QString>

namespace mevo {

/// What there is after the copy keys were pressed.
struct CopyOutcome
{
    bool changed = false; ///< something has been put on the clipboard since
    QString clipboard;    ///< its text now
    QString before;       ///< its text before the keys; empty where it was emptied on purpose
    QString selection;    ///< what another program holds as selected without copying
};

/// What is taken for the selected text.
struct SelectionChoice
{
    QString text;
    bool putBack = false; ///< what the clipboard held before is to be put there again
};

/// What was copied; without that, what is selected; without that, what the clipboard has held all along, and
/// nothing where something that is no text was copied.
SelectionChoice chooseSelection(const CopyOutcome &outcome);

} // namespace mevo
