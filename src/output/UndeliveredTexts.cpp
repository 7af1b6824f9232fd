#include "output/UndeliveredTexts.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSaveFile>

#include <utility>

namespace mevo {

namespace {

const QString textKey = QStringLiteral("text");
const QString whenKey = QStringLiteral("when");

/// Far more than the longest texts that can wait.
constexpr qint64 largestFile = 16LL * 1024 * 1024;

constexpr QFileDevice::Permissions ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

} // namespace

UndeliveredTexts::UndeliveredTexts(QString path)
    : m_path(std::move(path))
{
    read();
}

UndeliveredTexts::~UndeliveredTexts()
{
    if (!m_stored) { // there may be room by now
        write();
    }
}

void UndeliveredTexts::read()
{
    QFile file(m_path);
    if (!file.exists()) {
        return;
    }
    QJsonDocument document;
    if (file.size() <= largestFile && file.open(QIODevice::ReadOnly)) {
        document = QJsonDocument::fromJson(file.readAll());
    }
    if (!document.isArray()) {
        QString aside = m_path + QStringLiteral(".broken");
        for (int i = 2; QFile::exists(aside); ++i) { // texts may be found in that one, too
            aside = m_path + QStringLiteral(".broken%1").arg(i);
        }
        const bool kept = file.rename(aside);
        qWarning().noquote() << "Undelivered texts: the file cannot be understood and is"
                             << (kept ? QStringLiteral("kept as ") + aside : QStringLiteral("left as it is"));
        return;
    }
    for (const QJsonValue &entry : document.array()) {
        const QString text = entry.toObject().value(textKey).toString();
        if (!text.isEmpty()) {
            m_texts.push_back(
                {text, QDateTime::fromString(entry.toObject().value(whenKey).toString(), Qt::ISODate)});
        }
    }
    if (count() > most) {
        m_texts.erase(m_texts.begin(), m_texts.end() - most);
    }
}

bool UndeliveredTexts::write()
{
    m_stored = m_texts.empty() ? !QFile::exists(m_path) || QFile::remove(m_path) : replaceFile();
    return m_stored;
}

bool UndeliveredTexts::replaceFile() const
{
    QJsonArray entries;
    for (const UndeliveredText &entry : m_texts) {
        entries.append(QJsonObject{{textKey, entry.text}, {whenKey, entry.when.toString(Qt::ISODate)}});
    }
    const QByteArray content = QJsonDocument(entries).toJson();
    QSaveFile file(m_path);
    // Without flush() an empty file would take the place of the old one on a full disk: commit() does not
    // notice.
    if (file.open(QIODevice::WriteOnly) && file.setPermissions(ownerOnly) &&
        file.write(content) == content.size() && file.flush() && file.commit()) {
        return true;
    }
    qWarning().noquote() << "Undelivered texts: cannot be written:" << file.errorString();
    return false;
}

bool UndeliveredTexts::add(const QString &text, const QDateTime &when)
{
    if (text.isEmpty()) {
        return true;
    }
    if (count() == most) {
        qWarning("Undelivered texts: the oldest of %d makes room", most);
        m_texts.erase(m_texts.begin());
    }
    m_texts.push_back({text, when.toUTC()});
    return write();
}

bool UndeliveredTexts::remove(int index)
{
    m_texts.erase(m_texts.begin() + index);
    return write();
}

bool UndeliveredTexts::replace(int index, const QString &rest)
{
    if (rest.isEmpty()) {
        return remove(index);
    }
    m_texts[static_cast<std::size_t>(index)].text = rest;
    return write();
}

bool UndeliveredTexts::removeAll()
{
    m_texts.clear();
    return write();
}

} // namespace mevo
