#include "platform/linux/LinuxProcesses.h"

#include "base/LogText.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDBusReply>
#include <QDebug>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <thread>
#include <unistd.h>
#include <vector>

namespace mevo {

namespace {

constexpr int LogindTimeout = 2000;               ///< milliseconds
constexpr int AuthenticationTimeout = 120 * 1000; ///< the user may be asked for a password
constexpr int KillWait = 1000;
constexpr int EndWait = 3000; ///< milliseconds until killed programs have ended
constexpr int largestProc = 1 << 20;
constexpr int CommLength = 15; ///< the kernel keeps that much of a program's name

QString withoutExe(const QString &name)
{
    return name.endsWith(QLatin1String(".exe"), Qt::CaseInsensitive) ? name.chopped(4) : name;
}

QByteArray readProc(int pid, const char *file)
{
    QFile source(QStringLiteral("/proc/%1/%2").arg(pid).arg(QLatin1String(file)));
    return source.open(QIODevice::ReadOnly) ? source.read(largestProc) : QByteArray();
}

/// Without the number of its screen, which names the same desktop.
QByteArray display(const QByteArray &name)
{
    const int screen = name.indexOf('.', name.lastIndexOf(':') + 1);
    return screen < 0 ? name : name.left(screen);
}

/// A process of another desktop of this user, whose windows and keys are none of ours. One that does not tell
/// its display counts as one of this, and so does one in a container: Flatpak's know ours by another name.
bool isElsewhere(int pid)
{
    const QList<QByteArray> environment = readProc(pid, "environ").split('\0');
    const auto told = [&environment](const QByteArray &name) {
        const auto found =
            std::find_if(environment.begin(), environment.end(),
                         [&name](const QByteArray &each) { return each.startsWith(name + '='); });
        return found == environment.end() ? QByteArray() : found->mid(name.size() + 1);
    };
    const QByteArray ours = display(qgetenv("DISPLAY"));
    const QByteArray its = display(told("DISPLAY"));
    return !ours.isEmpty() && !its.isEmpty() && its != ours && told("container").isEmpty();
}

/// Whether a process is known by the name, which a Windows program under Wine keeps with its suffix:
/// by its executable, by the first word of its command line, or, for a script, by the kernel's name.
bool hasName(int pid, const QString &name)
{
    const auto equal = [&name](const QString &other) {
        return withoutExe(other).compare(name, Qt::CaseInsensitive) == 0;
    };
    const QString executable = QFile::symLinkTarget(QStringLiteral("/proc/%1/exe").arg(pid));
    if (equal(QFileInfo(executable).fileName())) {
        return true;
    }
    QString command = QFile::decodeName(readProc(pid, "cmdline").split('\0').first());
    command.replace(QLatin1Char('\\'), QLatin1Char('/'));
    if (equal(command.section(QLatin1Char('/'), -1))) {
        return true;
    }
    const QString comm = QFile::decodeName(readProc(pid, "comm")).trimmed();
    return equal(comm) || (QFile::encodeName(comm).size() == CommLength &&
                           QFile::encodeName(name).startsWith(QFile::encodeName(comm)));
}

/// This user's processes of that name on this desktop, without this one and without those that have ended.
std::vector<int> processesNamed(const QString &imageName)
{
    const QString name = withoutExe(imageName);
    std::vector<int> found;
    for (const QFileInfo &entry : QDir(QStringLiteral("/proc")).entryInfoList(QDir::Dirs)) {
        bool isNumber = false;
        const int pid = entry.fileName().toInt(&isNumber);
        if (!isNumber || pid == getpid() || entry.ownerId() != geteuid() || !hasName(pid, name)) {
            continue;
        }
        const QByteArray status = readProc(pid, "stat");
        if (status.mid(status.lastIndexOf(')')).startsWith(") Z")) {
            continue;
        }
        if (!isElsewhere(pid)) {
            found.push_back(pid);
        }
    }
    return found;
}

bool start(const QString &program, const QStringList &arguments, const QString &folder = {})
{
    if (QProcess::startDetached(program, arguments, folder)) {
        return true;
    }
    qWarning().noquote() << "Processes: cannot start" << program;
    return false;
}

} // namespace

QString siblingPath(const QString &programFolder, const QString &name)
{
    QString relative = withoutExe(name);
    relative.replace(QLatin1Char('\\'), QLatin1Char('/'));
    return QDir::cleanPath(programFolder + QLatin1Char('/') + relative);
}

LinuxProcesses::LinuxProcesses(const QString &programFolder, const QDBusConnection &systemBus)
    : m_programFolder(programFolder)
    , m_systemBus(systemBus)
{
}

bool LinuxProcesses::startDetached(const QString &program, const QStringList &arguments)
{
    return start(program, arguments);
}

bool LinuxProcesses::startToType(const QString &program)
{
    return start(program, {}); // every program of the user may
}

QString LinuxProcesses::installedSibling(const QString &name) const
{
    const QFileInfo sibling(siblingPath(m_programFolder, name));
    if (!sibling.isFile() || !sibling.isExecutable()) {
        qWarning().noquote() << "Processes:" << sibling.filePath() << "is not installed";
        return {};
    }
    return sibling.filePath();
}

bool LinuxProcesses::startSibling(const QString &name, const QStringList &arguments, bool)
{
    const QString path = installedSibling(name);
    return !path.isEmpty() && start(path, arguments, QFileInfo(path).path());
}

Processes::Captured LinuxProcesses::capture(const QString &program, const QStringList &arguments,
                                            int timeoutMs)
{
    QElapsedTimer timer;
    timer.start();
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.setStandardInputFile(QProcess::nullDevice());
    process.start(program, arguments, QIODevice::ReadOnly);

    QByteArray output;
    const auto takeOutput = [&] { output.append(process.readAll().left(MaxCapturedBytes - output.size())); };
    while (process.state() != QProcess::NotRunning && !timer.hasExpired(timeoutMs)) {
        process.waitForReadyRead(static_cast<int>(qMax<qint64>(0, timeoutMs - timer.elapsed())));
        takeOutput();
    }
    Captured captured;
    captured.finished = process.state() == QProcess::NotRunning &&
                        process.error() == QProcess::UnknownError &&
                        process.exitStatus() == QProcess::NormalExit;
    if (captured.finished) {
        captured.exitCode = process.exitCode();
    } else {
        qWarning().noquote() << "Processes:" << program
                             << (process.error() == QProcess::FailedToStart
                                     ? "cannot be started"
                                     : "did not end by itself in time");
        process.kill();
        process.waitForFinished(KillWait);
    }
    takeOutput();
    captured.output = QString::fromLocal8Bit(output.constData(), output.size());
    return captured;
}

bool LinuxProcesses::killByImageName(const QString &imageName)
{
    bool killed = false;
    for (int pid : processesNamed(imageName)) {
        killed = kill(pid, SIGKILL) == 0 || killed;
    }
    QElapsedTimer timer;
    timer.start();
    while (killed && isRunning(imageName) && !timer.hasExpired(EndWait)) {
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return killed;
}

bool LinuxProcesses::isRunning(const QString &imageName)
{
    return !processesNamed(imageName).empty();
}

bool LinuxProcesses::openElevated(const QString &program, const QStringList &arguments)
{
    const QString path = program.startsWith(QLatin1Char('\\')) ? installedSibling(program) : program;
    if (path.isEmpty()) {
        return false;
    }
    const QString pkexec = QStandardPaths::findExecutable(QStringLiteral("pkexec"));
    if (pkexec.isEmpty()) {
        qWarning().noquote() << "Processes: no pkexec to start" << path << "with the administrator's rights";
        return false;
    }
    // pkexec starts with an empty environment; a program with windows needs its way to the display.
    QStringList command{QStringLiteral("env")};
    for (const char *name : {"DISPLAY", "XAUTHORITY", "WAYLAND_DISPLAY", "XDG_RUNTIME_DIR", "LANG"}) {
        if (qEnvironmentVariableIsSet(name)) {
            command.append(QLatin1String(name) + QLatin1Char('=') + qEnvironmentVariable(name));
        }
    }
    return start(pkexec, command + QStringList{path} + arguments);
}

bool LinuxProcesses::restartComputer()
{
    return askLogind(QStringLiteral("CanReboot"), QStringLiteral("Reboot"));
}

bool LinuxProcesses::shutDownComputer()
{
    return askLogind(QStringLiteral("CanPowerOff"), QStringLiteral("PowerOff"));
}

bool LinuxProcesses::askLogind(const QString &question, const QString &command)
{
    const auto message = [](const QString &method) {
        return QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.login1"),
                                              QStringLiteral("/org/freedesktop/login1"),
                                              QStringLiteral("org.freedesktop.login1.Manager"), method);
    };
    const QDBusReply<QString> may = m_systemBus.call(message(question), QDBus::Block, LogindTimeout);
    if (!may.isValid() ||
        (may.value() != QLatin1String("yes") && may.value() != QLatin1String("challenge"))) {
        qWarning().noquote() << "Processes: logind refuses" << command << "-"
                             << logText(may.isValid() ? may.value() : may.error().message());
        return false;
    }
    QDBusMessage call = message(command);
    call.setInteractiveAuthorizationAllowed(true);
    call << true; // logind may ask the user for a password
    auto *watcher = new QDBusPendingCallWatcher(m_systemBus.asyncCall(call, AuthenticationTimeout));
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, watcher,
                     [command](QDBusPendingCallWatcher *done) {
                         if (done->isError()) {
                             qWarning().noquote()
                                 << "Processes:" << command << "failed:" << logText(done->error().message());
                         }
                         done->deleteLater();
                     });
    return true;
}

} // namespace mevo
