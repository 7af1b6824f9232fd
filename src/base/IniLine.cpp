#include "base/IniLine.h"

#include <algorithm>

namespace mevo {

namespace {

using Bytes = std::string_view;

Bytes trimmed(Bytes text)
{
    constexpr char blanks[] = " \t";
    text.remove_prefix(std::min(text.find_first_not_of(blanks), text.size()));
    return text.substr(0, text.find_last_not_of(blanks) + 1);
}

} // namespace

IniLine takeIniLine(Bytes &text)
{
    const auto end = std::min(text.find_first_of("\r\n"), text.size());
    const auto next = std::min(end + (text.substr(end, 2) == "\r\n" ? 2 : 1), text.size());
    const Bytes content = text.substr(0, end);
    IniLine line;
    line.bytes = text.substr(0, next);
    text.remove_prefix(next);

    const Bytes inside = trimmed(content);
    if (inside.empty() || inside[0] == ';' || inside[0] == '#') {
        return line;
    }
    if (inside[0] == '[') {
        const auto bracket = inside.find(']');
        line.kind = IniLine::Kind::Group;
        line.closed = bracket != Bytes::npos;
        line.name = trimmed(inside.substr(1, line.closed ? bracket - 1 : Bytes::npos));
        return line;
    }
    const auto equals = content.find('=');
    line.name = trimmed(content.substr(0, equals));
    line.kind = equals == Bytes::npos || line.name.empty() ? IniLine::Kind::Odd : IniLine::Kind::Entry;
    if (equals != Bytes::npos) {
        line.value = content.substr(equals + 1);
    }
    return line;
}

} // namespace mevo
