#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace mevo {

/// Larger files are no tables or settings, and are not read.
constexpr qint64 largestWholeFile = 64 << 20;

/// The content of a file, empty when there is none. Nothing for what cannot be read, is no file or is
/// larger than `largestWholeFile`.
std::optional<QByteArray> readWholeFile(const QString &path);

/// Exchanges a file's content in one step: after a crash or on a full disk it is the old or the new one.
/// Gives what went wrong, empty when nothing did.
QString replaceWholeFile(const QString &path, const QByteArray &content);

} // namespace mevo
