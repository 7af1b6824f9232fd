#pragma once

#include <string_view>

namespace mevo {

/// One line of an INI text, in views into it.
struct IniLine
{
    enum class Kind {
        Blank, ///< nothing, or a remark: it begins with ";" or "#"
        Group, ///< "[name]"
        Entry, ///< "name=value"
        Odd,   ///< anything else
    };
    Kind kind = Kind::Blank;
    std::string_view bytes; ///< all of it, with its end
    std::string_view name;  ///< of the group or the key as it is written, without the blanks around it
    std::string_view value; ///< all that stands behind the "=", up to the line's end
    bool closed = true;     ///< false for a group without its "]"
};

/// Takes the first line off a text that is not empty. "\n", "\r\n" and a lone "\r" end a line.
IniLine takeIniLine(std::string_view &text);

/// The byte order mark that programs of other systems put before UTF-8.
constexpr std::string_view utf8Mark("\xEF\xBB\xBF");

} // namespace mevo
