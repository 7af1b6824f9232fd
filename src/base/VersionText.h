#pragma once

#include <QString>

namespace mevo {

/// The version shown to the user, "V1.07".
QString versionText();
/// The same of another version's number, 108 for "V1.08".
QString versionText(int version);

/// "(yyyy.MM.dd TIME)" from a compiler's date ("Jan  2 2026") and time ("12:34:56"). A date that cannot
/// be read leaves its place empty.
QString buildStamp(const QString &compilerDate, const QString &compilerTime);
/// The same of this build.
QString buildStamp();

} // namespace mevo
