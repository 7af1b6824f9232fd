#include "receiver/HidrawNode.h"

#include "receiver/UeventSender.h"

#include <QFile>

#include <utility>
#include <vector>

namespace mevo::lab {

namespace {

quint64 nextSequence()
{
    static quint64 sequence = 1000;
    return ++sequence;
}

} // namespace

HidrawNode::HidrawNode(TestBed &bed, const DeviceTree &tree, HidrawServer::FeatureHandler onFeature)
    : m_bed(bed)
    , m_tree(tree)
    , m_server(HidrawServer::create(bed.root() + tree.nodePath(), tree.physicalPath(), std::move(onFeature)))
{
}

HidrawNode::~HidrawNode()
{
    unplug(Announce::Uevents);
    m_server->retire();
}

bool HidrawNode::plug()
{
    if (m_plugged)
        return false;
    const dev_t device = m_server->start();
    if (device == 0)
        return false;
    if (!m_bed.attach(m_tree.nodePath(), m_server->handler()) || !m_bed.add(m_tree.description(device))) {
        m_server->stop();
        return false;
    }
    m_plugged = true;
    for (const DevicePath &path : m_tree.chain())
        sendUevent(m_bed.root(), ueventMessage("add", path, properties(path), nextSequence()));
    return true;
}

bool HidrawNode::unplug(Announce announce)
{
    if (!m_plugged)
        return false;
    m_plugged = false;
    m_server->stop();
    m_bed.detach(m_tree.nodePath());

    // Children first, and the events when all of sysfs is gone: what a program under a real udevd sees.
    const std::vector<DevicePath> chain = m_tree.chain();
    std::vector<QByteArray> messages;
    for (auto device = chain.rbegin(); device != chain.rend(); ++device) {
        messages.push_back(ueventMessage("remove", *device, properties(*device), nextSequence()));
        m_bed.remove(device->path);
    }
    if (announce == Announce::Uevents) {
        for (const QByteArray &message : messages)
            sendUevent(m_bed.root(), message);
    }
    return true;
}

QByteArray HidrawNode::properties(const DevicePath &device) const
{
    QFile file(QString::fromLocal8Bit(m_bed.root() + "/sys" + device.path + "/uevent"));
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

} // namespace mevo::lab
