#pragma once

#include <QStringList>

#include <functional>
#include <initializer_list>

/// A text that a test writes down as it is, in UTF-8.
class Utf8Text : public QString
{
public:
    Utf8Text() = default;
    Utf8Text(const char *utf8)
        : QString(fromUtf8(utf8))
    {
    }
    Utf8Text(const QString &text)
        : QString(text)
    {
    }
};

/// `list({"one", "two"})`.
inline QStringList list(std::initializer_list<Utf8Text> texts)
{
    return QStringList(texts.begin(), texts.end());
}

/// The text of each item: `textsOf(rows, &Row::name)`.
template <class Items, class Text>
QStringList textsOf(const Items &items, const Text &text)
{
    QStringList texts;
    for (const auto &item : items) {
        texts.append(std::invoke(text, item));
    }
    return texts;
}

/// `"text"_s`.
inline QString operator""_s(const char *utf8, std::size_t size)
{
    return QString::fromUtf8(utf8, int(size));
}
