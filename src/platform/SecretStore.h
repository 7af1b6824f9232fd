#pragma once

#include <QByteArray>

#include <functional>

class QObject;

namespace mevo {

/// Where the user's secrets are kept.
enum class SecretPlace { Nowhere, Desktop, File };

/// One text of the user's that nobody else is to read. No call blocks: the answer comes from the event loop
/// of the thread that asks, in the order of the calls, and not at all once `context`, of the same thread, has
/// gone.
class SecretStore
{
public:
    virtual ~SecretStore() = default;

    struct Found
    {
        bool answered = false; ///< false when the place could not be read: it stays locked, or fails
        SecretPlace place = SecretPlace::Nowhere;
        QByteArray secret;
    };
    /// What is kept. The desktop may ask the user to unlock it.
    virtual void read(QObject *context, std::function<void(const Found &found)> done) = 0;
    /// Keeps `secret` instead, an empty one takes away what was kept. `Nowhere` when that failed, and then
    /// what was kept before is still there; after a removal it is the place that was cleared.
    virtual void write(const QByteArray &secret, QObject *context,
                       std::function<void(SecretPlace place)> done) = 0;
};

} // namespace mevo
