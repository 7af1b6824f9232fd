#pragma once

#include <QString>

#include <array>
#include <optional>
#include <vector>

namespace mevo {

/// What a command word does. The number is the one that the tables hold as `CmdWordTypeIndex`.
enum class CommandType { VoiceKeyboard, PinyinKeyboard, Web, File, Directory, Shortcut, Phrase };

/// All types in the order in which the merged table holds them.
inline constexpr std::array<CommandType, 7> allCommandTypes{
    CommandType::VoiceKeyboard, CommandType::PinyinKeyboard, CommandType::Web,   CommandType::File,
    CommandType::Directory,     CommandType::Shortcut,       CommandType::Phrase};

/// The label that stands in `CmdWordType`; it is part of the files and never translated.
QString commandTypeLabel(CommandType type);
/// The type of a label; nothing for any other text.
std::optional<CommandType> commandTypeOfLabel(const QString &label);
/// The type of a decimal number as the files hold it; nothing for any other text.
std::optional<CommandType> commandTypeOfIndex(const QString &index);

/// One row of a command table under the names of its keys. A null text stands for a key that the file
/// does not have, which an empty one is not.
struct CommandRow
{
    QString Hide;             ///< "1" hides the row in the editor; it is matched all the same
    QString CommandWords;     ///< spoken forms joined by ";"
    QString CmdWordType;      ///< label of the type
    QString CmdWordContents;  ///< address, path, key combination or text
    QString CmdWordTypeIndex; ///< as read; written from the label, whatever stands here
};

using CommandRows = std::vector<CommandRow>;

} // namespace mevo
