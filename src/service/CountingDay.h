#pragma once

#include <QDateTime>
#include <QString>

namespace mevo {

/// Form of times in the device record.
constexpr char recordTimeFormat[] = "yyyy-MM-dd hh:mm:ss";

/// The day of counting that began at `began`, a time of the device record with a "T" or a blank in the
/// middle, is over at `now`: more than 24 hours later. So is one that has not begun yet, as after a clock was
/// set back, and one whose time cannot be read.
bool isDayOver(const QString &began, const QDateTime &now);

} // namespace mevo
