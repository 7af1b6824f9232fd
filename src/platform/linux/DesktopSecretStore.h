#pragma once

#include "platform/SecretStore.h"

#include <QObject>
#include <QString>
#include <QThread>

#include <memory>
#include <vector>

struct _GCancellable;

namespace mevo {

/// The secret of this program in the desktop's keyring (org.freedesktop.secrets, through libsecret), or,
/// where there is no such service, in a file of the user's. Works in a thread of its own: a keyring that asks
/// the user holds up nothing but the calls behind it, and no call waits longer than `answerLimitMs`.
class DesktopSecretStore : public QObject, public SecretStore
{
public:
    /// `file` is used where there is no service, and always with `fileOnly`.
    DesktopSecretStore(QString file, bool fileOnly);
    /// Lets what is being written be written, for a moment.
    ~DesktopSecretStore() override;

    void read(QObject *context, std::function<void(const Found &)> done) override;
    void write(const QByteArray &secret, QObject *context, std::function<void(SecretPlace)> done) override;

    /// How long a call may take in all, the user's unlocking included.
    static constexpr int answerLimitMs = 120000;

private:
    using Cancel = std::shared_ptr<_GCancellable>;
    /// Does `work` in the thread, then `done` here if `context` is still there.
    void enqueue(std::function<void(_GCancellable *)> work, QObject *context, std::function<void()> done);

    const QString m_file;
    const bool m_fileOnly;
    QThread m_thread;
    QObject m_worker;            ///< lives in the thread
    std::vector<Cancel> m_calls; ///< that have not been answered
};

} // namespace mevo
