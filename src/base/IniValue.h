#pragma once

#include <QByteArray>
#include <QString>

#include <string_view>

namespace mevo {

/// Reads a value of an INI file in UTF-8 as QSettings writes it: what stands behind the "=", without
/// blanks around it. A value that was typed without quotes is taken whole, up to a remark that a blank and
/// a ";" begin. `openQuote` says that a quote is not closed. Null only for QSettings' own "@Invalid()".
QString readIniValue(std::string_view text, bool &openQuote);

/// The text of a value, byte for byte as QSettings would write it, but for characters beyond U+FFFF: they
/// are written as escapes, since QSettings with a codec loses them.
QByteArray iniValueText(const QString &value);

} // namespace mevo
