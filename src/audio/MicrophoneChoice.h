#pragma once

#include <QString>
#include <QStringList>

namespace mevo {

/// Whether a microphone of that name is the product's own.
bool isProductMicrophone(const QString &name);

/// The first of the names that is the product's own microphone; empty when there is none.
QString productMicrophone(const QStringList &names);

} // namespace mevo
