#pragma once

#include <QString>

namespace mevo {

/// The translation file for a Windows locale id: "cht.qm" for traditional Chinese, none (empty) for
/// simplified Chinese, which the program's own texts are, and "en.qm" for any other.
QString translationFileFor(int localeId);

} // namespace mevo
