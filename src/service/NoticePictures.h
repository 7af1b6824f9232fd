#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace mevo {

/// So many pictures of notices are kept; the oldest go first.
constexpr int mostNoticePictures = 20;

/// The content of the picture that is kept under this name, when it has that many bytes.
std::optional<QByteArray> keptNoticePicture(const QString &name, int size);

/// Keeps the picture of a notice beside the settings, which list what was kept: a picture takes the place of
/// an older one of its name, and never that of another file. What is not kept, for a reason that the log
/// tells, is fetched again.
void keepNoticePicture(const QString &name, const QByteArray &bytes);

} // namespace mevo
