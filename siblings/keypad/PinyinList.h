#pragma once

#include <QByteArray>
#include <QStringList>

#include <memory>

namespace mevo::keypad {

/// Texts and the letters that they are typed by, the most frequent first. Copies share it.
class PinyinList
{
public:
    PinyinList() = default;
    /// Reads lines of a text, a blank and letters from a to z, UTF-8, the most frequent first. Lines that
    /// begin with "#" are remarks; others that are not of this form are left out.
    explicit PinyinList(const QByteArray &lines);
    /// The keyboard's own list, which is compiled in. Empty, with a log line, where it is missing.
    static PinyinList shipped();

    bool isEmpty() const;
    /// The texts typed by exactly these letters, at most so many.
    QStringList exactly(const QString &letters, int most) const;
    /// Those whose letters begin so and go on.
    QStringList beginning(const QString &letters, int most) const;

private:
    struct Data;
    std::shared_ptr<const Data> m_data; ///< null for none
};

} // namespace mevo::keypad
