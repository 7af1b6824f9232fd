#include "base/ShippedFiles.h"

#include "base/WholeFile.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLockFile>
#include <QSet>

namespace mevo {

namespace {

QString digestOf(const QByteArray &content)
{
    return QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex());
}

/// The content of a shipped file; nothing where it cannot be read whole, or holds nothing: a package that is
/// being installed, a disk that was full. Such a file must not take the place of the user's.
std::optional<QByteArray> shippedContent(const QString &path)
{
    const std::optional<QByteArray> content = readWholeFile(path);
    if (!content || content->isEmpty() || content->size() != QFileInfo(path).size()) {
        qWarning().noquote() << "Shipped files:" << path << "cannot be read, or is empty";
        return std::nullopt;
    }
    return content;
}

/// Brings one file. Its digest to be noted: of what has been brought, now or earlier; empty for a file that
/// is the user's own.
QString bring(const QString &shipped, const QString &copy, const QString &noted)
{
    const std::optional<QByteArray> content = shippedContent(shipped);
    if (!content) {
        return noted;
    }
    const QString digest = digestOf(*content);
    if (!QFile::exists(copy)) {
        const QString failure = replaceWholeFile(copy, *content);
        if (!failure.isEmpty()) {
            qWarning().noquote() << "Shipped files:" << copy << "has not been brought:" << failure;
            return {};
        }
        return digest;
    }
    if (noted == digest) {
        return noted; // it has been brought; what the user has made of it since does not matter
    }
    const std::optional<QByteArray> present = readWholeFile(copy);
    const QString presentDigest = present ? digestOf(*present) : QString();
    if (presentDigest == digest) {
        return digest; // a file of a version that took no notes, among others
    }
    if (noted.isEmpty() || presentDigest != noted) {
        return noted;
    }
    const QString failure = replaceWholeFile(copy, *content);
    if (!failure.isEmpty()) {
        qWarning().noquote() << "Shipped files: the newer" << copy << "has not been brought:" << failure;
        return noted;
    }
    return digest;
}

} // namespace

void bringShippedFiles(const QStringList &sources, const QString &target, int lockWaitMs)
{
    const QString notesPath = QDir(target).filePath(QStringLiteral("MEVOShipped.json"));
    // Two programs, or two starts of one, would see each other's half: what one has brought and not noted yet
    // would be the user's own to the other.
    QLockFile lock(QDir(target).filePath(QStringLiteral("MEVOShipped.lock")));
    if (!lock.tryLock(lockWaitMs)) {
        if (lock.error() == QLockFile::LockFailedError) {
            qWarning("Shipped files: another program is bringing them, and does not come to an end");
        } else { // a disk that is full, it may be
            qWarning().noquote() << "Shipped files: nothing can be brought to" << target;
        }
        return;
    }
    const QJsonObject before =
        QJsonDocument::fromJson(readWholeFile(notesPath).value_or(QByteArray())).object();
    QJsonObject notes = before;
    QSet<QString> seen;
    for (const QString &source : sources) {
        const QDir folder(source);
        if (folder.canonicalPath() == QDir(target).canonicalPath()) {
            continue;
        }
        for (const QString &name : folder.entryList({QStringLiteral("MEV*.ini")}, QDir::Files)) {
            if (seen.contains(name)) {
                continue;
            }
            seen.insert(name);
            const QString noted =
                bring(folder.filePath(name), QDir(target).filePath(name), notes.value(name).toString());
            if (!noted.isEmpty()) {
                notes.insert(name, noted);
            }
        }
    }
    if (notes == before) {
        return;
    }
    const QString failure = replaceWholeFile(notesPath, QJsonDocument(notes).toJson());
    if (!failure.isEmpty()) {
        qWarning().noquote() << "Shipped files:" << notesPath << "cannot be written:" << failure;
    }
}

} // namespace mevo
