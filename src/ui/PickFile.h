#pragma once

#include <QString>

class QWidget;

namespace mevo {

/// Dialogs that let the user pick a path, as the desktop has them. Each gives the path, empty when none was
/// picked or `parent` has gone meanwhile. A filter is such as "Tables (*.ini)".
QString pickFile(QWidget *parent, const QString &title, const QString &filter = QString());
QString pickNewFile(QWidget *parent, const QString &title, const QString &proposed, const QString &filter);
QString pickFolder(QWidget *parent, const QString &title, const QString &start);

} // namespace mevo
