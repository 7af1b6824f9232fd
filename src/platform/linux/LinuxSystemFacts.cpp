#include "platform/linux/LinuxSystemFacts.h"

#include "base/ApplicationFiles.h"
#include "base/WholeFile.h"
#include "platform/linux/WindowsLocaleId.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QUuid>

namespace mevo {

namespace {

/// The 32 hex digits that the file holds, else nothing.
QByteArray readId(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        return {};
    }
    static const QRegularExpression id(QStringLiteral("^[0-9a-fA-F]{32}$"));
    const QByteArray text = file.read(64).trimmed();
    return id.match(QString::fromLatin1(text)).hasMatch() ? text.toLower() : QByteArray();
}

} // namespace

LinuxSystemFacts::LinuxSystemFacts(const QStringList &machineIdFiles, const QString &ownIdFile)
    : m_machineIdFiles(machineIdFiles)
    , m_ownIdFile(ownIdFile)
{
}

QString LinuxSystemFacts::defaultOwnIdFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/mevoinput/computer-id");
}

int LinuxSystemFacts::localeId() const
{
    const QStringList languages = QLocale::system().uiLanguages();
    return windowsLocaleId(languages.isEmpty() ? QLocale::system() : QLocale(languages.first()));
}

qint64 LinuxSystemFacts::freeSpaceMiB() const
{
    return freeSpaceMiB(appFolder());
}

qint64 LinuxSystemFacts::freeSpaceMiB(const QString &folder)
{
    QString there = folder;
    while (!QFileInfo::exists(there) && QFileInfo(there).path() != there) {
        there = QFileInfo(there).path();
    }
    const QStorageInfo volume(there);
    return volume.isValid() && volume.isReady() ? volume.bytesAvailable() >> 20 : -1;
}

QString LinuxSystemFacts::computerId() const
{
    for (const QString &path : m_machineIdFiles) {
        const QByteArray id = readId(path);
        if (!id.isEmpty()) {
            const QByteArray hash =
                QCryptographicHash::hash("mevoinput computer " + id, QCryptographicHash::Sha256);
            return QString::fromLatin1(hash.toHex().left(32));
        }
    }
    QByteArray own = readId(m_ownIdFile);
    if (own.isEmpty()) {
        own = QUuid::createUuid().toByteArray(QUuid::Id128);
        QDir().mkpath(QFileInfo(m_ownIdFile).path());
        if (!replaceWholeFile(m_ownIdFile, own).isEmpty()) {
            qWarning().noquote() << "Computer id: cannot be kept in" << m_ownIdFile;
        }
    }
    return QString::fromLatin1(own);
}

QStringList LinuxSystemFacts::programFolders() const
{
    return {QDir::homePath() + QStringLiteral("/.local/opt"), QStringLiteral("/opt")};
}

} // namespace mevo
