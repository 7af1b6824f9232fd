#pragma once

#include "service/ServerAddresses.h"

#include <QJsonObject>
#include <QString>
#include <QVector>

#include <functional>

namespace mevo {

/// A server address that the device record wants changed: the key of the settings file and its new text.
struct AddressChange
{
    QString key;
    QString text;
};

/// The server addresses of a device record that differ from the stored ones, in their order. `stored` gives
/// what a key of the settings file holds, in plain text. Empty columns change nothing, and neither does a
/// text that can be no address, or no schema name: with such a one the backend would be out of reach for
/// good.
QVector<AddressChange> changedAddresses(const QJsonObject &row,
                                        const std::function<QString(const QString &key)> &stored);

} // namespace mevo
