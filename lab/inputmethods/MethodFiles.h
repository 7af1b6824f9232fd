#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace lab {

/// The folder of a user's settings of XunFei's input method, with "/" at its end; `dataFolder` is where
/// programs keep their data, such as "~/.local/share".
QString xunFeiSettings(const QString &dataFolder);
/// The settings file of Baidu's.
QString baiduSettings(const QString &dataFolder);

/// First digit of the version in "iflyImeCfg.xml"; 0 when it does not tell.
int generationOf(const QByteArray &iflyImeCfg);

/// The X keysym of the hot key that XunFei's "config.xml" has; 0 when it has none, or when it is switched
/// off.
unsigned xunFeiKey(const QByteArray &configXml);
/// The same of Baidu's settings, which name it by a Windows key code. Only Ctrl and the function keys are
/// understood.
unsigned baiduKey(const QByteArray &ini);

} // namespace lab
