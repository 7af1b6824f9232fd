#include "base/WholeFile.h"

#include <QFileInfo>
#include <QSaveFile>

namespace mevo {

std::optional<QByteArray> readWholeFile(const QString &path)
{
    const QFileInfo info(path);
    if (!info.exists()) {
        return QByteArray();
    }
    QFile file(path);
    if (!info.isFile() || info.size() > largestWholeFile ||
        !file.open(QIODevice::ReadOnly | QIODevice::Unbuffered)) {
        return std::nullopt;
    }
    QByteArray content = file.readAll();
    return file.error() == QFileDevice::NoError ? std::make_optional(std::move(content)) : std::nullopt;
}

QString replaceWholeFile(const QString &path, const QByteArray &content)
{
    QSaveFile file(path);
    // commit() by itself does not notice that what write() has kept in its buffer finds no room.
    if (file.open(QIODevice::WriteOnly) && file.write(content) == content.size() && file.flush() &&
        file.commit()) {
        return {};
    }
    return file.errorString();
}

} // namespace mevo
