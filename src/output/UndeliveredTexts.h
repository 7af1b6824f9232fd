#pragma once

#include <QDateTime>
#include <QString>

#include <vector>

namespace mevo {

/// A text that was recognised and that no window was seen to take.
struct UndeliveredText
{
    QString text;
    QDateTime when; ///< UTC
};

/// The texts that wait for the user, the oldest first. They are kept in a file that only the user can read,
/// which is written at each change, so that neither a crash nor the end of the program loses them. The file
/// is a JSON array (RFC 8259) of objects with "text" and "when" (ISO 8601).
class UndeliveredTexts
{
public:
    /// Of more texts than these the oldest goes, with a log line; whoever adds one tells the user.
    static constexpr int most = 100;

    /// Reads what an earlier run has left in `path`. A file that cannot be understood is put aside under
    /// another name, with a log line.
    explicit UndeliveredTexts(QString path);
    /// Tries once more to write what could not be written.
    ~UndeliveredTexts();
    UndeliveredTexts(const UndeliveredTexts &) = delete;
    UndeliveredTexts &operator=(const UndeliveredTexts &) = delete;

    const std::vector<UndeliveredText> &texts() const { return m_texts; }
    int count() const { return static_cast<int>(m_texts.size()); }

    /// Adds a text at the end; an empty one is nothing. False when it could not be written: then it is kept
    /// in memory alone, and the file stays as it was.
    bool add(const QString &text, const QDateTime &when);
    /// Takes the text at `index` out, which must be one of texts(). False when that could not be written.
    bool remove(int index);
    /// Puts what is left of the text at `index` in its place; nothing left removes it.
    bool replace(int index, const QString &rest);
    bool removeAll();

private:
    void read();
    bool write();
    bool replaceFile() const;

    QString m_path;
    std::vector<UndeliveredText> m_texts;
    bool m_stored = true; ///< the file holds m_texts
};

} // namespace mevo
