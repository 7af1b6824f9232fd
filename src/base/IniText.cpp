#include "base/IniText.h"

#include "base/IniValue.h"

#include <algorithm>

namespace mevo {

namespace {

using Bytes = std::string_view;
using Kind = IniLine::Kind;

const QLatin1String general("General");

/// Keys of no group stand in "[General]", and a group of that name is written in another way.
QString groupOfName(Bytes name, bool *broken)
{
    const QString group = readIniName(name, broken);
    return group.compare(general, Qt::CaseInsensitive) == 0                      ? QString()
           : group.compare(QLatin1Char('%') + general, Qt::CaseInsensitive) == 0 ? group.mid(1)
                                                                                 : group;
}

QByteArray nameOfGroup(const QString &group)
{
    return group.isEmpty()                                    ? QByteArrayLiteral("General")
           : group.compare(general, Qt::CaseInsensitive) == 0 ? "%" + iniNameText(group)
                                                              : iniNameText(group);
}

bool endsLine(const QByteArray &bytes)
{
    return bytes.endsWith('\n') || bytes.endsWith('\r');
}

} // namespace

IniText::IniText(const QByteArray &text)
    : m_lineEnd(QByteArrayLiteral("\n"))
{
    Bytes rest(text.constData(), std::size_t(text.size()));
    if (rest.substr(0, utf8Mark.size()) == utf8Mark) {
        m_mark = text.left(int(utf8Mark.size()));
        rest.remove_prefix(utf8Mark.size());
    }
    QString group;
    while (!rest.empty()) {
        Line line = readLine(takeIniLine(rest), group);
        if (line.kind == Kind::Group) {
            group = line.name;
        }
        m_lines.push_back(std::move(line));
    }
    if (!m_lines.empty() && m_lines.front().bytes.endsWith("\r\n")) {
        m_lineEnd = QByteArrayLiteral("\r\n");
    }
    buildIndex();
}

IniText::Line IniText::readLine(const IniLine &read, const QString &group) const
{
    Line line;
    line.bytes = QByteArray(read.bytes.data(), int(read.bytes.size()));
    line.kind = read.kind;
    line.odd = read.kind == Kind::Odd || !read.closed;
    if (read.kind == Kind::Group) {
        line.name = groupOfName(read.name, &line.odd);
    } else if (read.kind == Kind::Entry) {
        const QString key = readIniName(read.name, &line.odd);
        line.name = group.isEmpty() ? key : group + QLatin1Char('/') + key;
        const IniValue value = readIniValue(read.value);
        line.value = value.value;
        line.valueAt = int(read.value.data() - read.bytes.data()) + int(value.begin);
        line.valueLength = int(value.length);
        line.odd = line.odd || value.openQuote || value.broken;
    }
    line.odd = line.odd || read.name.find('\0') != Bytes::npos;
    return line;
}

QByteArray IniText::text() const
{
    QByteArray text = m_mark;
    for (const Line &line : m_lines) {
        text += line.bytes;
    }
    return text;
}

QVariant IniText::value(const QString &key) const
{
    const auto found = m_index.constFind(key);
    return found == m_index.constEnd() ? QVariant() : m_lines[*found].value;
}

QStringList IniText::groups() const
{
    QStringList names;
    for (const Line &line : m_lines) {
        const int slash = line.kind == Kind::Entry ? line.name.indexOf(QLatin1Char('/')) : -1;
        if (slash >= 0 && (names.isEmpty() || names.last() != line.name.leftRef(slash))) {
            names.append(line.name.left(slash));
        }
    }
    names.sort();
    names.removeDuplicates();
    return names;
}

QByteArrayList IniText::oddLines() const
{
    QByteArrayList lines;
    for (const Line &line : m_lines) {
        if (line.odd) {
            lines.append(line.bytes.trimmed());
        }
    }
    return lines;
}

void IniText::setValue(const QString &key, const QVariant &value)
{
    const auto found = m_index.constFind(key);
    if (found != m_index.constEnd()) {
        replaceValue(m_lines[*found], value);
        return;
    }
    const int slash = key.indexOf(QLatin1Char('/'));
    const QString group = key.left(std::max(slash, 0));
    insert(placeFor(group), iniNameText(key.mid(slash + 1)) + '=' + iniValueText(value), group);
    buildIndex();
}

void IniText::replaceValue(Line &line, const QVariant &value)
{
    QByteArray text = iniValueText(value);
    const IniValue read = readIniValue(Bytes(text.constData(), std::size_t(text.size())));
    if (!line.odd && line.value == read.value && line.value.type() == read.value.type()) {
        return; // written in another way perhaps, but the same
    }
    line.value = read.value;
    line.odd = false;
    const int behind = line.valueAt + line.valueLength;
    if (behind < line.bytes.size() && line.bytes[behind] == ';') {
        text += ' '; // the remark stood right behind a quote, and the new value may have none
    }
    line.bytes.replace(line.valueAt, line.valueLength, text);
    line.valueLength = text.size();
}

/// Where the next key of a group goes: behind its last key, or else behind its name, which is made at the
/// end of the text when it is not there.
std::size_t IniText::placeFor(const QString &group)
{
    std::size_t place = 0;
    bool inGroup = group.isEmpty(); // so does what stands before all groups
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        if (m_lines[i].kind == Kind::Group) {
            inGroup = m_lines[i].name == group;
        }
        if (inGroup && (m_lines[i].kind == Kind::Group || m_lines[i].kind == Kind::Entry)) {
            place = i + 1;
        }
    }
    if (place > 0) {
        return place;
    }
    if (!m_lines.empty() && m_lines.back().kind != Kind::Blank) {
        insert(m_lines.size(), {}, {});
    }
    insert(m_lines.size(), '[' + nameOfGroup(group) + ']', {});
    return m_lines.size();
}

void IniText::insert(std::size_t at, const QByteArray &bytes, const QString &group)
{
    if (at > 0 && !endsLine(m_lines[at - 1].bytes)) {
        m_lines[at - 1].bytes += m_lineEnd;
    }
    const QByteArray withEnd = bytes + m_lineEnd;
    Bytes view(withEnd.constData(), std::size_t(withEnd.size()));
    m_lines.insert(m_lines.begin() + std::ptrdiff_t(at), readLine(takeIniLine(view), group));
}

void IniText::buildIndex()
{
    m_index.clear();
    for (std::size_t i = 0; i < m_lines.size(); ++i) {
        if (m_lines[i].kind == Kind::Entry) {
            m_index.insert(m_lines[i].name, i);
        }
    }
}

} // namespace mevo
