#pragma once

#include <QStringList>

namespace mevo {

/// What a program does to keys that are typed correctly, found by typing into it.
struct TypingHabits
{
    /// A character outside the BMP is dropped.
    bool dropsPairs = false;
    /// It is while the window is not the one that has the user's keyboard.
    bool dropsPairsUnfocused = false;
    /// A character outside the BMP goes another way through the program than others, and overtakes those
    /// before it that are still buffered there.
    bool pairsOvertake = false;
    /// Return and Tab may be carried out after what is typed behind them.
    bool ownKeysLag = false;
    /// The same key twice, without a pause, may count once.
    bool mergesRepeats = false;
    /// Keys yield nothing, or something else, in the states of the keyboard that choose among their symbols.
    bool oneState = false;
};

/// The habits of the program that has a window. `programs` are the names of the window's class.
TypingHabits typingHabits(const QStringList &programs);

/// UTF-16 units from the start of `text` that such a program takes by key strokes.
int typableLength(const QString &text, const TypingHabits &habits);

} // namespace mevo
