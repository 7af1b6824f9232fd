#include "receiver/HidrawServer.h"

#include "receiver/DeviceTree.h"

#include <umockdev.h>

#include <QLoggingCategory>

#include <linux/hidraw.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <utility>

namespace mevo::lab {

namespace {

constexpr int failed = -1;

/// Hands a finished server over to umockdev's worker thread: GLib does so by locks that a thread sanitizer
/// cannot see.
std::atomic<int> serversPublished{0};

HidrawServer *published(gpointer data)
{
    serversPublished.load(std::memory_order_acquire);
    return static_cast<std::shared_ptr<HidrawServer> *>(data)->get();
}

/// Gives the driver's answer to a read.
void answerRead(UMockdevIoctlClient *client, const QByteArray &report)
{
    UMockdevIoctlData *buffer = umockdev_ioctl_client_get_arg(client);
    // A shorter buffer loses the rest of the report.
    const int length = std::min(report.size(), buffer->data_len);
    std::memcpy(buffer->data, report.constData(), size_t(length));
    umockdev_ioctl_client_complete(client, length, 0);
}

int copyText(const QByteArray &text, unsigned char *buffer, int size)
{
    const int length = std::min(size, text.size() + 1);
    std::memcpy(buffer, text.constData(), size_t(length));
    return length;
}

} // namespace

std::shared_ptr<HidrawServer> HidrawServer::create(QByteArray nodeFile, QByteArray physicalPath,
                                                   FeatureHandler onFeature)
{
    std::shared_ptr<HidrawServer> server(
        new HidrawServer(std::move(nodeFile), std::move(physicalPath), std::move(onFeature)));
    server->connectSignals();
    return server;
}

HidrawServer::HidrawServer(QByteArray nodeFile, QByteArray physicalPath, FeatureHandler onFeature)
    : m_nodeFile(std::move(nodeFile))
    , m_physicalPath(std::move(physicalPath))
    , m_handler(umockdev_ioctl_base_new())
    , m_onFeature(std::move(onFeature))
{
}

HidrawServer::~HidrawServer() = default;

void HidrawServer::connectSignals()
{
    // Each connection holds the server: a program may ask on the worker thread while the owner goes.
    const auto connect = [this](const char *signal, GCallback callback) {
        g_signal_connect_data(
            m_handler, signal, callback, new std::shared_ptr<HidrawServer>(shared_from_this()),
            [](gpointer data, GClosure *) { delete static_cast<std::shared_ptr<HidrawServer> *>(data); },
            GConnectFlags(0));
    };
    connect("handle-ioctl", G_CALLBACK(+[](UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer data) {
                return gboolean(published(data)->handleIoctl(client));
            }));
    connect("handle-read", G_CALLBACK(+[](UMockdevIoctlBase *, UMockdevIoctlClient *client, gpointer data) {
                return gboolean(published(data)->handleRead(client));
            }));
    connect("client-connected", G_CALLBACK(+[](UMockdevIoctlBase *, UMockdevIoctlClient *client,
                                               gpointer data) { published(data)->clientConnected(client); }));
    serversPublished.fetch_add(1, std::memory_order_release);
}

dev_t HidrawServer::start()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    if (!renewTerminal())
        return 0;
    m_running = true;
    return m_nextTerminal.slaveDevice();
}

void HidrawServer::stop()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    m_running = false;
    for (auto &[client, state] : m_clients) {
        state.gone = true;
        if (std::exchange(state.waiting, false))
            umockdev_ioctl_client_complete(client, failed, EIO);
        state.queue.hangUp();
    }
    m_nextTerminal.close();
    unlink(m_nodeFile.constData());
}

void HidrawServer::retire()
{
    // With the handler go its connections, and with the last of them this object.
    const std::shared_ptr<HidrawServer> keep = shared_from_this();
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        m_onFeature = nullptr;
        for (auto &[client, state] : m_clients)
            g_object_unref(client);
        m_clients.clear();
    }
    g_object_unref(std::exchange(m_handler, nullptr));
}

void HidrawServer::push(const QByteArray &report)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    forgetClosedClients();
    for (auto &[client, state] : m_clients) {
        if (state.gone)
            continue;
        if (std::exchange(state.waiting, false))
            answerRead(client, report);
        else if (!state.queue.push(report))
            qWarning("a program reads too slowly: a report is lost");
    }
}

int HidrawServer::openCount()
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    forgetClosedClients();
    return int(std::count_if(m_clients.begin(), m_clients.end(),
                             [](const auto &entry) { return !entry.second.gone; }));
}

bool HidrawServer::renewTerminal()
{
    // The program that opened the node keeps the old terminal for itself.
    m_nextTerminal = PtyPair::create();
    if (!m_nextTerminal.valid())
        return false;
    const QByteArray fresh = m_nodeFile + ".new";
    if (symlink(m_nextTerminal.slaveName().constData(), fresh.constData()) < 0 ||
        rename(fresh.constData(), m_nodeFile.constData()) < 0) {
        qWarning("cannot put %s in place: %s", m_nodeFile.constData(), std::strerror(errno));
        return false;
    }
    return true;
}

void HidrawServer::forgetClosedClients()
{
    // umockdev 0.17.16 never tells that a client has vanished.
    for (auto entry = m_clients.begin(); entry != m_clients.end();) {
        if (umockdev_ioctl_client_get_connected(entry->first)) {
            ++entry;
        } else {
            g_object_unref(entry->first);
            entry = m_clients.erase(entry);
        }
    }
}

HidrawServer::Client *HidrawServer::find(_UMockdevIoctlClient *client)
{
    const auto entry = m_clients.find(client);
    return entry == m_clients.end() || entry->second.gone ? nullptr : &entry->second;
}

void HidrawServer::clientConnected(_UMockdevIoctlClient *client)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    forgetClosedClients();
    if (!m_running)
        return;
    g_object_ref(client);
    // hidapi's open is over only when its first ioctls are answered, which comes after this: the next
    // open already finds the fresh terminal.
    m_clients.emplace(client, Client{ReportQueue(std::move(m_nextTerminal))});
    renewTerminal();
}

bool HidrawServer::handleRead(_UMockdevIoctlClient *client)
{
    const std::lock_guard<std::mutex> lock(m_mutex);
    Client *state = find(client);
    if (!state) {
        umockdev_ioctl_client_complete(client, failed, EIO);
    } else if (const std::optional<QByteArray> report = state->queue.take()) {
        answerRead(client, *report);
    } else if (state->queue.settleFalseAlarm()) {
        // hidapi polls before it reads and takes EAGAIN for "nothing".
        umockdev_ioctl_client_complete(client, failed, EAGAIN);
    } else {
        state->waiting = true;
    }
    return true;
}

bool HidrawServer::handleIoctl(_UMockdevIoctlClient *client)
{
    const unsigned long request = umockdev_ioctl_client_get_request(client);
    if (_IOC_TYPE(request) != 'H')
        return false;
    FeatureHandler onFeature;
    {
        const std::lock_guard<std::mutex> lock(m_mutex);
        if (!find(client)) {
            umockdev_ioctl_client_complete(client, failed, ENODEV);
            return true;
        }
        onFeature = m_onFeature;
    }

    const int size = int(_IOC_SIZE(request));
    GError *error = nullptr;
    UMockdevIoctlData *data =
        umockdev_ioctl_data_resolve(umockdev_ioctl_client_get_arg(client), 0, gsize(size), &error);
    if (!data) {
        g_clear_error(&error);
        umockdev_ioctl_client_complete(client, failed, EFAULT);
        return true;
    }

    const QByteArray descriptor = reportDescriptor();
    int result = 0;
    switch (_IOC_NR(request)) {
    case _IOC_NR(HIDIOCGRDESCSIZE): {
        const int length = descriptor.size();
        std::memcpy(data->data, &length, sizeof length);
        break;
    }
    case _IOC_NR(HIDIOCGRDESC): {
        auto *answer = reinterpret_cast<hidraw_report_descriptor *>(data->data);
        std::memcpy(answer->value, descriptor.constData(),
                    std::min(size_t(answer->size), size_t(descriptor.size())));
        break;
    }
    case _IOC_NR(HIDIOCGRAWINFO): {
        constexpr unsigned busUsb = 3;
        const hidraw_devinfo info{busUsb, short(receiverVendor), short(receiverProduct)};
        std::memcpy(data->data, &info, sizeof info);
        break;
    }
    case _IOC_NR(HIDIOCGRAWNAME(0)):
        result = copyText(receiverName, data->data, size);
        break;
    case _IOC_NR(HIDIOCGRAWPHYS(0)):
        result = copyText(m_physicalPath, data->data, size);
        break;
    case _IOC_NR(HIDIOCSFEATURE(0)):
        result =
            onFeature ? onFeature(QByteArray(reinterpret_cast<const char *>(data->data), size)) : -ENODEV;
        if (result == 0)
            result = size;
        break;
    default:
        result = -EINVAL;
    }
    g_object_unref(data);
    if (result < 0)
        umockdev_ioctl_client_complete(client, failed, -result);
    else
        umockdev_ioctl_client_complete(client, result, 0);
    return true;
}

} // namespace mevo::lab
