#pragma once

#include "receiver/DeviceTree.h"
#include "receiver/HidrawServer.h"
#include "receiver/TestBed.h"

namespace mevo::lab {

/// A receiver's hidraw node with its chain of devices in sysfs, to be put in and pulled out.
class HidrawNode
{
public:
    enum class Announce { Uevents, Nothing };

    /// `onFeature` runs on umockdev's worker thread.
    HidrawNode(TestBed &bed, const DeviceTree &tree, HidrawServer::FeatureHandler onFeature);
    ~HidrawNode();
    HidrawNode(const HidrawNode &) = delete;
    HidrawNode &operator=(const HidrawNode &) = delete;

    bool plugged() const { return m_plugged; }
    /// Makes the devices appear and tells the monitors. False when it is in already or the bed refuses.
    bool plug();
    /// Makes them vanish; with Announce::Nothing only failing reads tell. False when it is out already.
    bool unplug(Announce announce);

    void push(const QByteArray &report) { m_server->push(report); }
    int openCount() { return m_server->openCount(); }

private:
    QByteArray properties(const DevicePath &device) const;

    TestBed &m_bed;
    const DeviceTree m_tree;
    std::shared_ptr<HidrawServer> m_server;
    bool m_plugged = false;
};

} // namespace mevo::lab
