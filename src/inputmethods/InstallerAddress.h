#pragma once

#include <QString>
#include <QUrl>

namespace mevo {

/// The address of an installer: http or https with a host, and the last part of its path is a plain file
/// name. Empty for anything else.
QUrl installerUrl(const QString &address);

/// The last part of the address' path as a file name, without any folder; empty when it is none.
QString installerFileName(const QUrl &url);

} // namespace mevo
