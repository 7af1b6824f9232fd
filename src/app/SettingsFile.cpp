#include "app/SettingsFile.h"

#include "app/ApplicationFiles.h"

#include <QDebug>
#include <QFile>
#include <QTextCodec>

namespace mevo {

SettingsFile::SettingsFile(const QString &group, const QString &path)
    : QSettings(path, QSettings::IniFormat)
{
    setIniCodec(QTextCodec::codecForName("UTF-8"));
    if (status() == QSettings::FormatError) {
        const QString kept = path + QStringLiteral(".broken");
        if (!QFile::exists(kept)) {
            QFile::copy(path, kept);
        }
        qWarning().noquote() << "Settings:" << path << "cannot be parsed; a copy is kept as" << kept;
    }
    if (!group.isEmpty()) {
        beginGroup(group);
    }
}

SettingsFile::~SettingsFile()
{
    if (!m_saved) {
        save();
    }
}

QString SettingsFile::defaultPath()
{
    return appFile(QStringLiteral("MEVOSetting.ini"));
}

bool SettingsFile::save()
{
    sync();
    m_saved = true;
    if (status() == QSettings::AccessError) {
        qWarning().noquote() << "Settings:" << fileName() << "cannot be read or written";
        return false;
    }
    return true;
}

QStringList SettingsFile::list(const QString &key) const
{
    QByteArray text = value(key).toByteArray();
    const int end = text.indexOf('\0');
    if (end >= 0) {
        text.truncate(end);
    }
    return QString::fromUtf8(text).split(QLatin1Char(';'));
}

} // namespace mevo
