#include "platform/linux/LinuxProcesses.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusInterface>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcess>

#include <csignal>

#include <sys/types.h>

namespace mevo {

namespace {

const QLatin1String windowsSuffix(".exe");
constexpr int largestOutput = 1024 * 1024;

QString withoutSuffix(const QString &name)
{
    return name.endsWith(windowsSuffix, Qt::CaseInsensitive) ? name.chopped(windowsSuffix.size()) : name;
}

/// Processes whose program file has that name, ours left out.
QList<pid_t> processesNamed(const QString &imageName)
{
    QList<pid_t> found;
    const QString wanted = withoutSuffix(imageName);
    for (const QString &entry : QDir(QStringLiteral("/proc")).entryList(QDir::Dirs)) {
        bool isNumber = false;
        const int pid = entry.toInt(&isNumber);
        if (!isNumber || pid == QCoreApplication::applicationPid()) {
            continue;
        }
        const QString program = QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(pid));
        if (!program.isEmpty() && QFileInfo(program).fileName() == wanted) {
            found.append(pid);
        }
    }
    return found;
}

bool askLogind(const QString &method)
{
    QDBusInterface manager(QStringLiteral("org.freedesktop.login1"),
                           QStringLiteral("/org/freedesktop/login1"),
                           QStringLiteral("org.freedesktop.login1.Manager"), QDBusConnection::systemBus());
    if (!manager.isValid() || manager.call(method, true).type() == QDBusMessage::ErrorMessage) {
        qWarning().noquote() << "Power:" << method << "was refused";
        return false;
    }
    return true;
}

} // namespace

bool LinuxProcesses::startDetached(const QString &program, const QStringList &arguments)
{
    return QProcess::startDetached(program, arguments);
}

QString LinuxProcesses::siblingPath(const QString &folder, const QString &name)
{
    const QString relative = withoutSuffix(QString(name).replace(QLatin1Char('\\'), QLatin1Char('/')));
    return QDir::cleanPath(folder + QLatin1Char('/') + relative);
}

bool LinuxProcesses::startSibling(const QString &name, const QStringList &arguments, bool)
{
    const QString path = siblingPath(QCoreApplication::applicationDirPath(), name);
    if (!QFileInfo(path).isExecutable()) {
        qInfo().noquote() << "Sibling:" << path << "is not installed";
        return false;
    }
    return startDetached(path, arguments);
}

Processes::Captured LinuxProcesses::capture(const QString &program, const QStringList &arguments,
                                            int timeoutMs)
{
    Captured captured;
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments, QIODevice::ReadOnly);
    captured.finished = process.waitForFinished(timeoutMs);
    if (!captured.finished) {
        qWarning().noquote() << "Command:" << program << "did not end:" << process.errorString();
        process.kill();
        process.waitForFinished(1000);
    }
    captured.exitCode = process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1;
    captured.output = QString::fromLocal8Bit(process.read(largestOutput));
    return captured;
}

bool LinuxProcesses::killByImageName(const QString &imageName)
{
    const QList<pid_t> processes = processesNamed(imageName);
    for (const pid_t process : processes) {
        kill(process, SIGTERM);
    }
    return !processes.isEmpty();
}

bool LinuxProcesses::isRunning(const QString &imageName)
{
    return !processesNamed(imageName).isEmpty();
}

bool LinuxProcesses::openElevated(const QString &program, const QStringList &arguments)
{
    return startDetached(QStringLiteral("pkexec"), QStringList{program} + arguments);
}

bool LinuxProcesses::restartComputer()
{
    return askLogind(QStringLiteral("Reboot"));
}

bool LinuxProcesses::shutDownComputer()
{
    return askLogind(QStringLiteral("PowerOff"));
}

} // namespace mevo
