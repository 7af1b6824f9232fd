#pragma once

#include "base/KeyTable.h"

#include <QString>

#include <optional>

namespace mevo {

class SettingsFile;

/// How the program of the custom input method is operated.
struct CustomMethod
{
    int modifiers = 0;   ///< HID modifier bits: 1 Ctrl, 2 Shift, 4 Alt, 8 Win
    int usage = 0;       ///< HID keyboard usage; 0 for the modifiers alone
    bool hold = false;   ///< the key is held while speaking; only of a program with a description
    QString windowClass; ///< of its window; empty when nobody has told
    bool baidu = false;  ///< its own INI file has to name the key; a service may have it
};

/// The user's description of a program that is not known by its name: the group `CustomInputMethod` of
/// the settings.
struct CustomDescription
{
    QString Key;         ///< a name of the key table, F1 to F24, or a HID keyboard usage such as "0x42"
    QString Modifiers;   ///< "Ctrl", "Shift", "Alt", "Win", joined with "+"
    QString Mode;        ///< "hold", also when empty, or "tap"
    QString WindowClass; ///< may be empty
};

CustomDescription readCustomDescription(const SettingsFile &group);

/// The group that readCustomDescription() wants to be opened at.
extern const QString customMethodGroup;

/// The name of a program's file without path and suffix; either separator ends a folder.
QString programBaseName(const QString &path);

/// How the program at `path` is operated, by its base name or else by the description. Nothing for an
/// empty path, and for a program that is neither known nor described in a way that can be used.
std::optional<CustomMethod> customMethod(const QString &path, const CustomDescription &description,
                                         const KeyTable &keys);

} // namespace mevo
