#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace mevo {

/// The folder where XunFei's input method keeps its settings, with "/" at its end; `genericData` is the
/// user's folder for the data of programs.
QString xunFeiFolder(const QString &genericData, bool xpClass);

/// What "iflyImeCfg.xml" tells of the installed XunFei.
struct XunFeiInstallation
{
    QString folder;     ///< of the program, in the form of the file; empty when it is not told
    int generation = 0; ///< first digit of its version; 0 when it is not told
};

/// Nothing when the text is no XML.
std::optional<XunFeiInstallation> parseIflyImeCfg(const QByteArray &xml);

/// Whether "config.xml" has the offline recognition chosen; nothing when it does not tell.
std::optional<bool> xunFeiOfflineMode(const QByteArray &configXml);

/// The hot key of "config.xml".
struct XunFeiHotKey
{
    int usage = 0;        ///< HID keyboard usage of the function key; 0 when it is another key
    QByteArray rewritten; ///< the file's new content, with F6 as the hot key; empty when it may stay
};

/// Nothing when the text is no XML or does not have the element of the hot key.
std::optional<XunFeiHotKey> xunFeiHotKey(const QByteArray &configXml);

/// The usage of the function key at the end of a text such as "enable=1;keyStr=Ctrl+F10"; 0 for none.
int usageOfKeyText(const QString &startEnd);

/// What configuring "config.xml" came to.
enum class XunFeiConfigured {
    Changed = 0,     ///< the hot key has been set to F6
    Impossible = -1, ///< the file is missing, broken or cannot be written: nothing has been touched
    AsItStands = 1   ///< the file had a hot key already, or it may not be changed
};
struct XunFeiConfiguration
{
    XunFeiConfigured result = XunFeiConfigured::Impossible;
    int usage = 0; ///< of the hot key, 0 when it is not known
};

/// Sees to the hot key in the "config.xml" at `path`. Where it has to be set the file is made read-only
/// afterwards, so that the input method does not take the key away again; a file that is read-only is made
/// writable before, and read-only again when nothing had to be set. Without `mayChange` the file is only
/// read.
XunFeiConfiguration configureXunFeiFile(const QString &path, bool mayChange);

/// Exchanges the "config.xml" at `path` for the prepared one at `source`. Gives what went wrong, and the file
/// stays; empty when nothing did.
QString replaceXunFeiConfig(const QString &source, const QString &path);

} // namespace mevo
