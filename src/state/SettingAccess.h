#pragma once

#include "state/SettingsTable.h"

#include <QVariant>

namespace mevo {

/// The row of a key of the full load; null for a key that it does not read.
const SettingRow *settingRow(const QString &key);

/// What a row's member holds: a bool, an int, a text, or the text of a list with ";" between its parts.
QVariant memberValue(const SettingRow &row, const MainState &state);

/// Gives a row's member a value of that form, whether or not the row is sticky.
void setMemberValue(const SettingRow &row, const QVariant &value, MainState &state);

/// A flag as the file holds it under this key: "true" and "false", or 1 and 0 where a number is read.
QVariant storedFlag(const SettingRow *row, bool on);

/// The parts of a list's text; none of an empty one.
QStringList listParts(const QString &text);

} // namespace mevo
