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

/// There is no such file, or nothing is seen that would keep it from being taken away. Else a log line.
bool isSecretFileRemovable(const QString &path);

/// By what a text that is set aside is found again, so that it is not there twice: letters and digits.
QString secretAsideName(const QByteArray &content);

/// Keeps `content` in a file of mode 0600 of its own beside the file of that path, as "PATH.unreadable-NAME".
bool setSecretFileAside(const QString &path, const QByteArray &content);

} // namespace mevo
