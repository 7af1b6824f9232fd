#pragma once

#include <QString>

namespace mevo {

/// Style sheet that puts a language picture on the bar's button. `stem` names a picture of
/// ":/rec/ChineseLan/", or is a whole resource path.
QString languageButtonStyle(const QString &stem, bool vertical);

/// Style sheet for the language of a Baidu `dev_pid`; empty for a code that has no picture, which
/// leaves the button as it is.
QString baiduLanguageStyle(const QString &voiceType, bool vertical);

} // namespace mevo
