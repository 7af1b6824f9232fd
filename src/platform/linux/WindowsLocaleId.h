#pragma once

#include <QLocale>

namespace mevo {

/// The Windows locale id of a locale: exact for the Chinese variants, one id for each other language,
/// US English (0x0409) for languages that the table does not know.
int windowsLocaleId(const QLocale &locale);

} // namespace mevo
