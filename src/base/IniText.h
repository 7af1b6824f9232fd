#pragma once

#include "base/IniLine.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>
#include <QVariant>

#include <vector>

namespace mevo {

/// An INI text in UTF-8 that is changed key by key: a change touches the line of its key alone, and all
/// other lines stay byte for byte, with their remarks, their order and what nobody understands.
///
/// A line is read by itself, as QSettings would read it where QSettings had written it; nothing in it
/// can swallow the lines behind it. Keys are "group/key" as in QSettings, "key" for one of no group; the
/// last line of a key counts.
class IniText
{
public:
    explicit IniText(const QByteArray &text = {});

    QByteArray text() const;
    bool contains(const QString &key) const { return m_index.contains(key); }
    /// A QString, or the QByteArray of "@ByteArray(...)"; invalid when the key is absent.
    QVariant value(const QString &key) const;
    /// Groups of the first level that have keys, each once and sorted as text.
    QStringList groups() const;
    /// Changes the key's line, or adds one behind its group's last key.
    void setValue(const QString &key, const QVariant &value);
    /// The lines that cannot be understood whole: no "=" or no name, an open quote, bytes that are no text.
    QByteArrayList oddLines() const;

private:
    struct Line
    {
        QByteArray bytes;
        IniLine::Kind kind = IniLine::Kind::Blank;
        QString name; ///< of a group; the full key of an entry
        QVariant value;
        int valueAt = 0;
        int valueLength = 0;
        bool odd = false;
    };

    Line readLine(const IniLine &read, const QString &group) const;
    void replaceValue(Line &line, const QVariant &value);
    std::size_t placeFor(const QString &group);
    void insert(std::size_t at, const QByteArray &bytes, const QString &group);
    void buildIndex();

    QByteArray m_mark; ///< the byte order mark, where there is one
    QByteArray m_lineEnd;
    std::vector<Line> m_lines;
    QHash<QString, std::size_t> m_index; ///< full key to its last line
};

} // namespace mevo
