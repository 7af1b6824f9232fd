#pragma once

#include <QMap>
#include <QString>

namespace mevo {

class SettingsFile;

/// Columns of the device record and the numbers that the user has chosen for them.
using RecordChoices = QMap<QString, int>;

/// What the user has chosen and the backend has not heard of, as the settings keep it over the end of the
/// program. Parts that are no column of the user's or no number are left out.
RecordChoices untoldChoices(const SettingsFile &settings);

/// Keeps choices until they are told; a later one of a column takes the place of an earlier one.
void keepUntold(const RecordChoices &choices, SettingsFile &settings);

/// These have been told. A column for which another number has been chosen meanwhile stays.
void dropTold(const RecordChoices &choices, SettingsFile &settings);

/// "NAME=NUMBER" assignments for a statement, in the order of the names.
QString assignments(const RecordChoices &choices);

} // namespace mevo
