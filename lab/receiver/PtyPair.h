#pragma once

#include <QByteArray>

#include <sys/types.h>

namespace mevo::lab {

/// A raw pseudo terminal. Its slave stands behind the hidraw node, since a program can poll() it and sees a
/// hang-up when it goes.
class PtyPair
{
public:
    PtyPair() = default;
    ~PtyPair() { close(); }
    PtyPair(PtyPair &&other) noexcept;
    PtyPair &operator=(PtyPair &&other) noexcept;

    /// A fresh terminal; not valid() when the system has none left.
    static PtyPair create();

    bool valid() const { return m_master >= 0; }
    QByteArray slaveName() const { return m_slaveName; }
    dev_t slaveDevice() const;

    /// Makes the slave readable by one byte more.
    void ring();
    /// Takes up to `count` bytes back. How many came: a terminal delivers late, so it may be fewer.
    int unring(int count);
    void close();

private:
    int m_master = -1;
    int m_slave = -1;
    QByteArray m_slaveName;
};

} // namespace mevo::lab
