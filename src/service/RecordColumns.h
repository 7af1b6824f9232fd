#pragma once

#include "state/MainState.h"

#include <QJsonObject>
#include <QString>
#include <QVector>

namespace mevo {

/// A value for the settings file that a record brought.
struct RecordSetting
{
    QString key;
    int value;
};

/// What a device record asks of the main window, besides the state that it has changed.
struct RecordEffects
{
    QVector<RecordSetting> settings;
    bool menuChanged = false; ///< something that the language menu shows is another than before
};

/// Takes over the columns of a device record in the table's order, and what follows from one for another. A
/// column that is absent, of another type or out of its range leaves its member; one that counts is added to
/// what the backend has not been told. `xpClass` keeps the newer XunFei off. Server addresses, the engine
/// selectors' effects, the version and the day are not looked at.
RecordEffects applyRecordColumns(MainState &state, const QJsonObject &row, bool xpClass);

/// The allowances and input-method flags of a record that has just been created. What has been used before
/// counts.
void applyNewRecord(MainState &state);

} // namespace mevo
