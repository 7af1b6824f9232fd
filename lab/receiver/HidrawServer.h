#pragma once

#include "receiver/PtyPair.h"
#include "receiver/ReportQueue.h"

#include <QByteArray>

#include <functional>
#include <map>
#include <memory>
#include <mutex>

struct _UMockdevIoctlBase;
struct _UMockdevIoctlClient;

namespace mevo::lab {

/// Answers opens, reads and ioctls on the hidraw node, as the kernel's hidraw driver would.
///
/// Its callbacks run on umockdev's worker thread, its public functions on any thread.
class HidrawServer : public std::enable_shared_from_this<HidrawServer>
{
public:
    /// Called for each feature report, with no lock of the server held. 0, or a negated errno to refuse it.
    using FeatureHandler = std::function<int(const QByteArray &report)>;

    /// `nodeFile` is the node's file in the test bed, `physicalPath` the answer to HIDIOCGRAWPHYS.
    static std::shared_ptr<HidrawServer> create(QByteArray nodeFile, QByteArray physicalPath,
                                                FeatureHandler onFeature);
    ~HidrawServer();

    _UMockdevIoctlBase *handler() const { return m_handler; }

    /// Puts a terminal behind the node and lets programs open it. Its device number, 0 on failure.
    dev_t start();
    /// The device is gone: waiting reads fail, polls hang up, later calls answer "no such device".
    void stop();
    /// To be called once, after stop(): the owner goes, what programs still ask is answered with errors.
    void retire();

    /// Queues an input report for every open.
    void push(const QByteArray &report);
    /// How many opens are there.
    int openCount();

private:
    struct Client
    {
        ReportQueue queue;
        bool gone = false;
        bool waiting = false; ///< a blocking read is unanswered
    };

    HidrawServer(QByteArray nodeFile, QByteArray physicalPath, FeatureHandler onFeature);
    void connectSignals();
    void clientConnected(_UMockdevIoctlClient *client);
    bool handleRead(_UMockdevIoctlClient *client);
    bool handleIoctl(_UMockdevIoctlClient *client);
    bool renewTerminal();
    void forgetClosedClients();
    Client *find(_UMockdevIoctlClient *client);

    const QByteArray m_nodeFile;
    const QByteArray m_physicalPath;
    _UMockdevIoctlBase *m_handler;
    std::mutex m_mutex;
    FeatureHandler m_onFeature;
    bool m_running = false;
    PtyPair m_nextTerminal; ///< behind the node for whoever opens it next
    std::map<_UMockdevIoctlClient *, Client> m_clients;
};

} // namespace mevo::lab
