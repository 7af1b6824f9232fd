#include "keypad/PinyinList.h"

#include <QDebug>
#include <QFile>

#include <algorithm>
#include <limits>
#include <string_view>
#include <vector>

namespace mevo::keypad {

namespace {

bool isLetters(std::string_view text)
{
    return !text.empty() &&
           std::all_of(text.begin(), text.end(), [](char c) { return c >= 'a' && c <= 'z'; });
}

bool beginsWith(std::string_view text, std::string_view beginning)
{
    return text.substr(0, beginning.size()) == beginning;
}

quint64 headOf(std::string_view letters)
{
    quint64 head = 0;
    for (std::size_t i = 0; i < sizeof head; ++i) {
        head = head << 8 | (i < letters.size() ? quint64(letters[i]) : 0);
    }
    return head;
}

} // namespace

/// The lines as they are, and where each of them has what: tens of thousands of texts of their own would take
/// some megabytes and most of the start's time.
struct PinyinList::Data
{
    struct Entry
    {
        quint64 head;  ///< the first eight letters, as a number that sorts as they do: most differ there
        quint32 place; ///< of the text; what stands further on is less frequent
        quint16 textSize;
        quint16 lettersSize;
    };

    explicit Data(const QByteArray &text)
        : lines(text)
    {
        const std::string_view all(lines.constData(), std::size_t(lines.size()));
        for (std::size_t at = 0; at < all.size();) {
            const std::size_t end = std::min(all.find('\n', at), all.size());
            add(all.substr(at, end - at), at);
            at = end + 1;
        }
        std::sort(entries.begin(), entries.end(), [this](const Entry &a, const Entry &b) {
            if (a.head != b.head) {
                return a.head < b.head;
            }
            const int order = lettersOf(a).compare(lettersOf(b));
            return order != 0 ? order < 0 : a.place < b.place;
        });
    }

    void add(std::string_view line, std::size_t at)
    {
        constexpr std::size_t longest = std::numeric_limits<quint16>::max();
        const std::size_t blank = line.find(' ');
        if (line.empty() || line.front() == '#' || blank == 0 || blank == std::string_view::npos ||
            line.size() > longest || !isLetters(line.substr(blank + 1))) {
            return;
        }
        entries.push_back(
            {headOf(line.substr(blank + 1)), quint32(at), quint16(blank), quint16(line.size() - blank - 1)});
    }

    std::string_view lettersOf(const Entry &entry) const
    {
        return {lines.constData() + entry.place + entry.textSize + 1, entry.lettersSize};
    }
    QString textOf(const Entry &entry) const
    {
        return QString::fromUtf8(lines.constData() + entry.place, entry.textSize);
    }

    using Place = std::vector<Entry>::const_iterator;
    /// The first entry whose letters do not stand before these.
    Place firstOf(std::string_view letters) const
    {
        return std::lower_bound(
            entries.begin(), entries.end(), letters,
            [this](const Entry &entry, std::string_view wanted) { return lettersOf(entry) < wanted; });
    }

    const QByteArray lines;
    std::vector<Entry> entries; ///< by their letters, those of equal letters by their frequency
};

PinyinList::PinyinList(const QByteArray &lines)
    : m_data(std::make_shared<Data>(lines))
{
}

PinyinList PinyinList::shipped()
{
    QFile file(QStringLiteral(":/pinyin/pinyin.txt"));
    if (!file.open(QIODevice::ReadOnly)) {
        qWarning("Keypad: the list of pinyin is missing");
        return {};
    }
    return PinyinList(file.readAll());
}

bool PinyinList::isEmpty() const
{
    return !m_data || m_data->entries.empty();
}

QStringList PinyinList::exactly(const QString &letters, int most) const
{
    QStringList texts;
    if (isEmpty()) {
        return texts;
    }
    const std::string wanted = letters.toStdString();
    for (auto entry = m_data->firstOf(wanted);
         entry != m_data->entries.end() && m_data->lettersOf(*entry) == wanted && texts.size() < most;
         ++entry) {
        texts.append(m_data->textOf(*entry));
    }
    return texts;
}

QStringList PinyinList::beginning(const QString &letters, int most) const
{
    QStringList texts;
    if (isEmpty() || most <= 0) {
        return texts;
    }
    const std::string wanted = letters.toStdString();
    std::vector<Data::Entry> found;
    for (auto entry = m_data->firstOf(wanted);
         entry != m_data->entries.end() && beginsWith(m_data->lettersOf(*entry), wanted); ++entry) {
        if (entry->lettersSize > wanted.size()) {
            found.push_back(*entry);
        }
    }
    const auto end = found.begin() + std::min(std::ptrdiff_t(most), std::ptrdiff_t(found.size()));
    std::partial_sort(found.begin(), end, found.end(),
                      [](const Data::Entry &a, const Data::Entry &b) { return a.place < b.place; });
    for (auto entry = found.begin(); entry != end; ++entry) {
        texts.append(m_data->textOf(*entry));
    }
    return texts;
}

} // namespace mevo::keypad
