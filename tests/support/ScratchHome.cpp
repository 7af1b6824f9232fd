#include "support/ScratchHome.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

ScratchHome::ScratchHome()
{
    QTemporaryDir folder;
    folder.setAutoRemove(false);
    m_folder = folder.path();
    qputenv("MEVO_HOME", QFile::encodeName(m_folder));
}

ScratchHome::~ScratchHome()
{
    QDir(m_folder).removeRecursively();
}

QString ScratchHome::path(const QString &name) const
{
    return m_folder + QLatin1Char('/') + name;
}

void ScratchHome::write(const QString &name, const QByteArray &content) const
{
    QFile file(path(name));
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate) || file.write(content) != content.size()) {
        qFatal("cannot write %s", qPrintable(file.fileName()));
    }
}

QByteArray ScratchHome::read(const QString &name) const
{
    QFile file(path(name));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

void ScratchHome::remove(const QString &name) const
{
    QFile::remove(path(name));
}
