#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace mevo {

/// The content of a file of secrets, empty when there is none. Nothing, with a log line, for what cannot be
/// read or is too large to be one. One that others may read is taken from them.
std::optional<QByteArray> readSecretFile(const QString &path);

/// Exchanges the content in one step by a file of mode 0600; without content the file goes. False, with a log
/// line, when that failed.
bool writeSecretFile(const QString &path, const QByteArray &content);

} // namespace mevo
