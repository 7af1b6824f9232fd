#pragma once

#include "state/MainState.h"

#include <QJsonObject>
#include <QString>
#include <QStringList>

#include <optional>

namespace mevo {

/// Product of the receiver that carries this identity: the first two groups of "02-01-001357", read as
/// hexadecimal and printed in decimal. Nothing when the text has no such groups.
struct ProductKey
{
    QString customIndex;
    QString productionIndex;
};
std::optional<ProductKey> productKey(const QString &dongleId);

/// A value for the settings file that the record brought.
struct ProductSetting
{
    QString key;
    QString value;
};

/// Takes over the columns of a product record that are not empty: the heartbeat's interval (below 500 ms
/// it is 1000), whether the tip window is a talk button, the sizes of the account lists, the texts of the
/// help pages. Answers what is to be kept in the settings file. A column of another type, too long or out of
/// its range leaves its member; one log line names all such columns.
QList<ProductSetting> applyProductRecord(MainState &state, const QJsonObject &row);

} // namespace mevo
