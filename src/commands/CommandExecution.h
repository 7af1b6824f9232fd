#pragma once

#include "commands/CommandPort.h"
#include "commands/CommandRow.h"
#include "state/SettingsState.h"

namespace mevo {

/// Position in the key table from which on the keys are media keys, of the consumer page.
constexpr int firstMediaKey = 69;

/// Reads a shortcut such as "Control+Shift+Z" with the key table `names` and `codes` (base 16). A part
/// that is neither a modifier nor a key of the table makes the key 0, with one log line for all of them; the
/// last key of several counts.
KeyCombination parseShortcut(const QString &contents, const QStringList &names, const QStringList &codes);

/// The address of a web row: "http://" goes before one that has neither "http:" nor "https:" in it.
QUrl webAddress(const QString &contents);

/// Carries out a matched row, of a type from web to phrase. `sent` says that what was spoken has already
/// gone to the screen; a phrase is then not typed.
void runCommand(const CommandRow &row, bool sent, const SettingsState &settings, CommandPort &port);

} // namespace mevo
