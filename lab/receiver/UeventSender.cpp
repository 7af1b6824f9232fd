#include "receiver/UeventSender.h"

#include <QDir>
#include <QLoggingCategory>

#include <arpa/inet.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

namespace mevo::lab {

namespace {

/// Header of a message between udevd and libudev.
struct MonitorHeader
{
    char prefix[8] = "libudev";
    quint32 magic = htonl(0xfeedcafe);
    quint32 headerSize = sizeof(MonitorHeader);
    quint32 propertiesOffset = sizeof(MonitorHeader);
    quint32 propertiesLength = 0;
    quint32 subsystemHash = 0;
    quint32 devtypeHash = 0;
    quint32 tagBloomHigh = 0;
    quint32 tagBloomLow = 0;
};

/// MurmurHash2 with seed 0: monitors filter by it in the kernel.
quint32 monitorHash(const QByteArray &text)
{
    constexpr quint32 multiplier = 0x5bd1e995;
    quint32 hash = quint32(text.size());
    int index = 0;
    for (; text.size() - index >= 4; index += 4) {
        quint32 block;
        std::memcpy(&block, text.constData() + index, sizeof block);
        block *= multiplier;
        block ^= block >> 24;
        block *= multiplier;
        hash = hash * multiplier ^ block;
    }
    if (index < text.size()) {
        for (int shift = 0; index < text.size(); ++index, shift += 8)
            hash ^= quint32(quint8(text.at(index))) << shift;
        hash *= multiplier;
    }
    hash ^= hash >> 13;
    hash *= multiplier;
    hash ^= hash >> 15;
    return hash;
}

} // namespace

QByteArray ueventMessage(const QByteArray &action, const DevicePath &device, const QByteArray &properties,
                         quint64 sequence)
{
    QByteArray body;
    const auto add = [&body](const QByteArray &property) { body += property + '\0'; };
    add("ACTION=" + action);
    add("DEVPATH=" + device.path);
    add("SEQNUM=" + QByteArray::number(sequence));
    add("SUBSYSTEM=" + device.subsystem);
    for (QByteArray property : properties.split('\n')) {
        if (property.isEmpty() || property.startsWith("SUBSYSTEM="))
            continue;
        if (property.startsWith("DEVNAME=") && !property.startsWith("DEVNAME=/"))
            property.insert(int(std::strlen("DEVNAME=")), "/dev/");
        add(property);
    }

    MonitorHeader header;
    header.propertiesLength = quint32(body.size());
    header.subsystemHash = htonl(monitorHash(device.subsystem));
    if (!device.devtype.isEmpty())
        header.devtypeHash = htonl(monitorHash(device.devtype));
    return QByteArray(reinterpret_cast<const char *>(&header), sizeof header) + body;
}

void sendUevent(const QByteArray &root, const QByteArray &message)
{
    const QDir folder(QString::fromLocal8Bit(root));
    // umockdev's preload turns each netlink monitor into a socket "event<fd>" in the test bed.
    const QStringList sockets = folder.entryList({QStringLiteral("event[0-9]*")}, QDir::System | QDir::Files);
    for (const QString &name : sockets) {
        const QByteArray path = folder.filePath(name).toLocal8Bit();
        sockaddr_un address{};
        address.sun_family = AF_UNIX;
        if (path.size() >= int(sizeof address.sun_path))
            continue;
        std::copy(path.begin(), path.end(), address.sun_path);
        const int descriptor = socket(AF_UNIX, SOCK_DGRAM | SOCK_CLOEXEC, 0);
        if (descriptor < 0)
            continue;
        if (sendto(descriptor, message.constData(), size_t(message.size()), MSG_DONTWAIT,
                   reinterpret_cast<const sockaddr *>(&address), sizeof address) < 0 &&
            errno != ECONNREFUSED) {
            qWarning("uevent to %s lost: %s", path.constData(), std::strerror(errno));
        }
        close(descriptor);
    }
}

} // namespace mevo::lab
