#include "window/SelectionChoice.h"

namespace mevo {

SelectionChoice chooseSelection(const CopyOutcome &outcome)
{
    SelectionChoice choice;
    choice.putBack = outcome.changed && !outcome.before.isEmpty() && outcome.clipboard != outcome.before;
    if (outcome.changed && !outcome.clipboard.isEmpty()) {
        choice.text = outcome.clipboard;
    } else if (!outcome.selection.isEmpty()) {
        choice.text = outcome.selection;
    } else if (!outcome.changed) {
        choice.text = outcome.before;
    }
    return choice;
}

} // namespace mevo
