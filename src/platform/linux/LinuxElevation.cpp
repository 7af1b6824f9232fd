#include "platform/linux/LinuxElevation.h"

#include <QCoreApplication>
#include <QDebug>
#include <QSettings>
#include <QStandardPaths>

namespace mevo {

namespace {

QString markKey()
{
    return QStringLiteral("RunAsAdmin/Program");
}

bool save(QSettings &settings)
{
    settings.sync();
    if (settings.status() != QSettings::NoError) {
        qWarning().noquote() << "Administrator mark: cannot write" << settings.fileName();
        return false;
    }
    return true;
}

} // namespace

LinuxElevation::LinuxElevation(const QString &file, const QString &program)
    : m_file(file)
    , m_program(program)
{
}

QString LinuxElevation::defaultFile()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/mevoinput/mevoinput.conf");
}

QString LinuxElevation::defaultProgram()
{
    return QCoreApplication::applicationFilePath();
}

bool LinuxElevation::isSet() const
{
    return QSettings(m_file, QSettings::IniFormat).value(markKey()).toString() == m_program;
}

bool LinuxElevation::set()
{
    QSettings settings(m_file, QSettings::IniFormat);
    settings.setValue(markKey(), m_program);
    return save(settings);
}

bool LinuxElevation::clear()
{
    QSettings settings(m_file, QSettings::IniFormat);
    if (!settings.contains(markKey())) {
        return true;
    }
    settings.remove(markKey());
    return save(settings);
}

} // namespace mevo
