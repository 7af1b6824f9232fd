#include "platform/linux/SecretFile.h"

#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFileInfo>
#include <QSaveFile>

namespace mevo {

namespace {

constexpr QFileDevice::Permissions ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;
constexpr QFileDevice::Permissions othersAny = QFileDevice::ReadGroup | QFileDevice::WriteGroup |
                                               QFileDevice::ExeGroup | QFileDevice::ReadOther |
                                               QFileDevice::WriteOther | QFileDevice::ExeOther;
constexpr qint64 largest = 64 * 1024;

} // namespace

std::optional<QByteArray> readSecretFile(const QString &path)
{
    QFile file(path);
    if (!file.exists()) {
        return QByteArray();
    }
    if (!QFileInfo(path).isFile() || file.size() > largest || !file.open(QIODevice::ReadOnly)) {
        qWarning().noquote() << "Secrets:" << path << "cannot be read:" << file.errorString();
        return std::nullopt;
    }
    if ((file.permissions() & othersAny) != 0) {
        qWarning().noquote() << "Secrets: others could read" << path << "and no longer can";
        file.setPermissions(ownerOnly);
    }
    QByteArray content = file.readAll();
    return file.error() == QFileDevice::NoError ? std::make_optional(std::move(content)) : std::nullopt;
}

bool writeSecretFile(const QString &path, const QByteArray &content)
{
    if (content.isEmpty()) {
        QFile file(path);
        if (!file.exists() || file.remove()) {
            return true;
        }
        qWarning().noquote() << "Secrets:" << path << "cannot be taken away:" << file.errorString();
        return false;
    }
    QDir().mkpath(QFileInfo(path).path());
    QSaveFile file(path);
    // Before anything is in it.
    if (file.open(QIODevice::WriteOnly) && file.setPermissions(ownerOnly) &&
        file.write(content) == content.size() && file.flush() && file.commit()) {
        return true;
    }
    qWarning().noquote() << "Secrets:" << path << "cannot be written:" << file.errorString();
    return false;
}

bool isSecretFileRemovable(const QString &path)
{
    const QFileInfo file(path);
    if (!file.exists() || (file.isFile() && QFileInfo(file.path()).isWritable())) {
        return true;
    }
    qWarning().noquote() << "Secrets:" << path << "could not be taken away";
    return false;
}

QString secretAsideName(const QByteArray &content)
{
    return QString::fromLatin1(QCryptographicHash::hash(content, QCryptographicHash::Sha256).toHex());
}

bool setSecretFileAside(const QString &path, const QByteArray &content)
{
    return writeSecretFile(path + QStringLiteral(".unreadable-") + secretAsideName(content), content);
}

} // namespace mevo
