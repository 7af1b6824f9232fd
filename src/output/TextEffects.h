#pragma once

#include <QString>

namespace mevo {

/// Simplified characters as the traditional ones of the Taiwan standard; words are not replaced. The
/// text comes back as it was, with one log line, when the conversion tables are not installed.
QString toTraditional(const QString &text);

/// Whether `key` is one of the ";"-separated words of a setting, upper and lower case alike.
bool isMappedWord(const QString &mapWords, const QString &key);

} // namespace mevo
