#pragma once

#include <QByteArray>
#include <QVariant>

#include <string_view>

namespace mevo {

/// What a line of an INI text says behind its "=".
struct IniValue
{
    QVariant value;        ///< a QString, or the QByteArray of "@ByteArray(...)"; invalid for "@Invalid()"
    std::size_t begin = 0; ///< where it stands, without the blanks and the remark around it
    std::size_t length = 0;
    bool openQuote = false; ///< a quote is not closed: the rest of the line is the value
    bool broken = false;    ///< bytes that are no UTF-8, read as U+FFFD, or a zero

    /// Null only where there is no value.
    QString text() const { return value.toString(); }
};

/// Reads a value of an INI file in UTF-8 as QSettings writes it, `text` being all that stands behind the
/// "=". What was typed without quotes is taken whole, up to a remark, which a blank and a ";" begin, and a
/// backslash that begins no known escape is meant as one.
IniValue readIniValue(std::string_view text);

/// The text of a value, byte for byte as QSettings would write it, but for U+FEFF and characters beyond
/// U+FFFF: they are written as escapes, since QSettings with a codec loses them.
QByteArray iniValueText(const QVariant &value);

/// A key's or a group's name as it stands in an INI text, in which "\" is "/" and "%" begins an escape, and
/// the other way round.
QString readIniName(std::string_view text, bool *broken = nullptr);
QByteArray iniNameText(const QString &name);

} // namespace mevo
