#include "platform/linux/LinuxSystem.h"

#include "app/ApplicationFiles.h"

#include <QCoreApplication>
#include <QCryptographicHash>
#include <QDebug>
#include <QDir>
#include <QFile>
#include <QLocale>
#include <QSaveFile>
#include <QSettings>
#include <QStandardPaths>
#include <QStorageInfo>
#include <QUuid>

#include <fcntl.h>
#include <sys/file.h>
#include <unistd.h>

namespace mevo {

namespace {

QSettings userConfiguration()
{
    return QSettings(QSettings::IniFormat, QSettings::UserScope, QStringLiteral("mevoinput"),
                     QStringLiteral("mevoinput"));
}

} // namespace

int LinuxSystemFacts::localeId() const
{
    return localeIdOf(QLocale::system().name());
}

int LinuxSystemFacts::localeIdOf(const QString &localeName)
{
    static constexpr struct
    {
        const char *name;
        int id;
    } chinese[] = {
        {"zh_TW", 0x0404}, {"zh_HK", 0x0C04}, {"zh_MO", 0x1404}, {"zh_SG", 0x1004}, {"zh", 0x0804},
    };
    for (const auto &locale : chinese) {
        if (localeName.startsWith(QLatin1String(locale.name))) {
            return locale.id;
        }
    }
    return 0x0409;
}

qint64 LinuxSystemFacts::freeSpaceMiB() const
{
    const QStorageInfo volume(appFolder());
    return volume.isValid() ? volume.bytesAvailable() >> 20 : -1;
}

QString LinuxSystemFacts::computerId() const
{
    QByteArray source;
    QFile machineId(QStringLiteral("/etc/machine-id"));
    if (machineId.open(QIODevice::ReadOnly)) {
        source = machineId.readAll().trimmed();
    }
    if (source.isEmpty()) {
        QSettings configuration = userConfiguration();
        const QString key = QStringLiteral("ComputerId");
        if (!configuration.contains(key)) {
            configuration.setValue(key, QUuid::createUuid().toString(QUuid::Id128));
        }
        source = configuration.value(key).toByteArray();
    }
    // The machine's own id stays here; services get a digest of it.
    return QString::fromLatin1(
        QCryptographicHash::hash("mevoinput" + source, QCryptographicHash::Sha256).toHex().left(32));
}

bool LinuxElevation::isSet() const
{
    return userConfiguration().value(QStringLiteral("RunAsAdmin")).toBool();
}

bool LinuxElevation::write(bool on)
{
    QSettings configuration = userConfiguration();
    configuration.setValue(QStringLiteral("RunAsAdmin"), on);
    configuration.sync();
    return configuration.status() == QSettings::NoError;
}

QString XdgStartupEntry::path(const QString &name)
{
    QString base = name;
    base.remove(QLatin1String(".lnk")).replace(QLatin1Char('/'), QLatin1Char('-'));
    return QStandardPaths::writableLocation(QStandardPaths::GenericConfigLocation) +
           QLatin1String("/autostart/") + base + QLatin1String(".desktop");
}

bool XdgStartupEntry::exists(const QString &name) const
{
    return QFile::exists(path(name));
}

bool XdgStartupEntry::set(const QString &name)
{
    const QString file = path(name);
    QDir().mkpath(QFileInfo(file).path());
    QString title = name;
    title.remove(QLatin1String(".lnk"));
    QString program = QCoreApplication::applicationFilePath();
    program.replace(QLatin1Char('\\'), QLatin1String("\\\\\\\\"))
        .replace(QLatin1Char('"'), QLatin1String("\\\\\""));
    QSaveFile entry(file);
    return entry.open(QIODevice::WriteOnly) &&
           entry.write(QStringLiteral("[Desktop Entry]\nType=Application\nName=%1\nExec=\"%2\"\n"
                                      "X-GNOME-Autostart-enabled=true\n")
                           .arg(title, program)
                           .toUtf8()) > 0 &&
           entry.commit();
}

bool XdgStartupEntry::clear(const QString &name)
{
    return QFile::remove(path(name));
}

NetworkState::Connection RouteNetworkState::fromRoutes(const QByteArray &table)
{
    for (const QByteArray &line : table.split('\n')) {
        const QList<QByteArray> fields = line.simplified().split(' ');
        if (fields.size() < 8 || fields[1] != "00000000" || fields[7] != "00000000") {
            continue;
        }
        const bool modem = fields[0].startsWith("ppp") || fields[0].startsWith("ww");
        return modem ? Connection::Modem : Connection::Lan;
    }
    return Connection::None;
}

NetworkState::Connection RouteNetworkState::connection()
{
    QFile routes(QStringLiteral("/proc/net/route"));
    if (routes.open(QIODevice::ReadOnly)) {
        const Connection found = fromRoutes(routes.readAll());
        if (found != Connection::None) {
            return found;
        }
    }
    QFile routes6(QStringLiteral("/proc/net/ipv6_route"));
    if (routes6.open(QIODevice::ReadOnly)) {
        for (const QByteArray &line : routes6.readAll().split('\n')) {
            if (line.startsWith("00000000000000000000000000000000 00") && !line.trimmed().endsWith("lo")) {
                return Connection::Lan;
            }
        }
    }
    return m_allServicesLocal && m_allServicesLocal() ? Connection::Lan : Connection::None;
}

bool FlockSingleInstance::acquire(const QString &name)
{
    QString folder = QStandardPaths::writableLocation(QStandardPaths::RuntimeLocation);
    if (folder.isEmpty()) {
        folder = QDir::tempPath();
    }
    const QString path = QStringLiteral("%1/%2-%3.lock").arg(folder, name).arg(getuid());
    m_file = ::open(QFile::encodeName(path).constData(), O_RDWR | O_CREAT | O_CLOEXEC | O_NOFOLLOW, 0600);
    if (m_file < 0) {
        qWarning().noquote() << "Single instance: cannot open" << path;
        return true; // better twice than not at all
    }
    if (::flock(m_file, LOCK_EX | LOCK_NB) == 0) {
        return true;
    }
    release();
    return false;
}

void FlockSingleInstance::release()
{
    if (m_file >= 0) {
        ::close(m_file);
        m_file = -1;
    }
}

} // namespace mevo
