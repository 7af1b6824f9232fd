#pragma once

#include "inputmethods/HotKey.h"

#include <QString>

namespace lab {

/// One of the lab's voice input methods.
struct Method
{
    const char *name;        ///< of its program
    const char *displayName; ///< for people
    const char *windowClass;
    const char *windowTitle;
    KeyUse use;
    unsigned keysym;     ///< of its key, where its settings name no other
    bool listensAtStart; ///< its window begins by itself
    bool takesClose;     ///< the window ends at a close message; else only a signal ends it
};

/// The method of a program name; `generation` counts for XunFei's, whose windows differ. Null when there is
/// none.
const Method *methodOf(const QString &name, int generation);

} // namespace lab
