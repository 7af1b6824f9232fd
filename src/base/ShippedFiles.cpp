#include "base/ShippedFiles.h"

#include "base/WholeFile.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSet>

namespace mevo {

namespace {

QString digestOf(const QByteArray &content)
{
    return QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex());
}

/// Brings one file. Its digest to be noted: of what has been brought, now or earlier; empty for a file that
/// is the user's own.
QString bring(const QString &shipped, const QString &copy, const QString &noted)
{
    const std::optional<QByteArray> content = readWholeFile(shipped);
    if (!content) {
        return noted;
    }
    const QString digest = digestOf(*content);
    if (!QFile::exists(copy)) {
        if (!QFile::copy(shipped, copy)) {
            return {};
        }
        QFile::setPermissions(copy, QFile::permissions(copy) | QFile::WriteOwner);
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

void bringShippedFiles(const QStringList &sources, const QString &target)
{
    const QString notesPath = QDir(target).filePath(QStringLiteral("MEVOShipped.json"));
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
