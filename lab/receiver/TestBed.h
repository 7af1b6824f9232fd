#pragma once

#include <QByteArray>

struct _UMockdevTestbed;
struct _UMockdevIoctlBase;

namespace mevo::lab {

/// A folder with a /sys and a /dev of its own that programs under umockdev's preload take for the machine's.
/// It is removed with the object.
class TestBed
{
public:
    TestBed();
    ~TestBed();
    TestBed(const TestBed &) = delete;
    TestBed &operator=(const TestBed &) = delete;

    /// What UMOCKDEV_DIR has to hold.
    QByteArray root() const { return m_root; }

    /// Adds the devices of a description in umockdev's language. False (with a log line) when it is refused.
    bool add(const QByteArray &description);
    /// Removes one device, children first; no event goes out.
    void remove(const QByteArray &sysPath);
    /// From now on `handler` answers reads and ioctls on the node. False (with a log line) on failure.
    bool attach(const QByteArray &node, _UMockdevIoctlBase *handler);
    void detach(const QByteArray &node);

private:
    _UMockdevTestbed *m_testbed;
    QByteArray m_root;
};

} // namespace mevo::lab
