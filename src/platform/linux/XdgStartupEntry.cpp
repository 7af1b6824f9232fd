#include "platform/linux/XdgStartupEntry.h"

#include "base/WholeFile.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QStandardPaths>

namespace mevo {

namespace {

/// The name without the suffix of a link and without anything that a file name or a line cannot hold.
QString plainName(const QString &name)
{
    QString plain;
    for (const QChar character : name) {
        const bool separator = character == QLatin1Char('/') || character == QLatin1Char('\\');
        plain.append(separator || !character.isPrint() ? QLatin1Char('_') : character);
    }
    if (plain.endsWith(QLatin1String(".lnk"), Qt::CaseInsensitive)) {
        plain.chop(4);
    }
    return plain.trimmed();
}

QString entryPath(const QString &folder, const QString &name)
{
    return folder + QLatin1Char('/') + plainName(name) + QStringLiteral(".desktop");
}

} // namespace

QString desktopEntryExec(const QString &program)
{
    QString exec;
    for (const QChar character : program) {
        if (character == QLatin1Char('\\')) {
            exec.append(QLatin1String("\\\\\\\\")); // escaped in the quotes, then in the string
        } else if (QStringLiteral("\"`$").contains(character)) {
            exec.append(QLatin1String("\\\\")).append(character);
        } else if (character == QLatin1Char('%')) {
            exec.append(QLatin1String("%%"));
        } else {
            exec.append(character);
        }
    }
    return QLatin1Char('"') + exec + QLatin1Char('"');
}

XdgStartupEntry::XdgStartupEntry(const QString &folder, const QString &program)
    : m_folder(folder)
    , m_program(program)
{
}

QString XdgStartupEntry::defaultFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QStringLiteral("/autostart");
}

QString XdgStartupEntry::defaultProgram()
{
    return QCoreApplication::applicationFilePath();
}

bool XdgStartupEntry::exists(const QString &name) const
{
    QFile file(entryPath(m_folder, name));
    if (!file.open(QIODevice::ReadOnly)) {
        return false;
    }
    for (const QByteArray &line : file.read(65536).split('\n')) {
        const QByteArray plain = line.simplified().replace(" ", "");
        if (plain == "Hidden=true" || plain == "X-GNOME-Autostart-enabled=false") {
            return false;
        }
    }
    return true;
}

bool XdgStartupEntry::set(const QString &name)
{
    const QString plain = plainName(name);
    if (plain.isEmpty()) {
        return false;
    }
    const QString path = entryPath(m_folder, name);
    const QByteArray content = QStringLiteral("[Desktop Entry]\n"
                                              "Type=Application\n"
                                              "Version=1.0\n"
                                              "Name=%1\n"
                                              "Exec=%2\n"
                                              "Terminal=false\n"
                                              "X-GNOME-Autostart-enabled=true\n")
                                   .arg(plain, desktopEntryExec(m_program))
                                   .toUtf8();
    QDir().mkpath(m_folder);
    const QString failure = replaceWholeFile(path, content);
    if (!failure.isEmpty()) {
        qWarning().noquote() << "Start at login:" << path << "cannot be written:" << failure;
    }
    return failure.isEmpty();
}

bool XdgStartupEntry::clear(const QString &name)
{
    QFile file(entryPath(m_folder, name));
    if (!file.exists() || file.remove()) {
        return true;
    }
    qWarning().noquote() << "Start at login:" << file.fileName()
                         << "cannot be removed:" << file.errorString();
    return false;
}

} // namespace mevo
