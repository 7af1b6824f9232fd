#pragma once

#include "platform/SecretStore.h"
#include "platform/linux/DesktopKeyring.h"

#include <QObject>
#include <QString>
#include <QThread>

#include <memory>
#include <vector>

namespace mevo {

/// The secret of this program in the desktop's keyring (org.freedesktop.secrets, through libsecret), or,
/// where there is no such service, in a file of the user's. Where it is not known whether there is one,
/// nothing is read or written. Works in a thread of its own: a keyring that asks the user holds up nothing
/// but the calls behind it, and no call takes longer than `answerLimitMs` once it is its turn.
class DesktopSecretStore : public QObject, public SecretStore
{
public:
    /// `file` is used where there is no service, and always with `fileOnly`. What could not be kept waits in
    /// "`file`.waiting".
    DesktopSecretStore(QString file, bool fileOnly);
    /// Lets what is being written be written, for a moment.
    ~DesktopSecretStore() override;

    void read(KeyringPrompt prompt, QObject *context, Done done) override;
    void change(KeyringPrompt prompt, Edit edit, QObject *context, Done done) override;

    /// How long a call may take in all, the user's unlocking included.
    int answerLimitMs = 120000;

private:
    using Cancel = std::shared_ptr<_GCancellable>;
    /// Does `work` in the thread, then `done` here if `context` is still there.
    void enqueue(KeyringPrompt prompt, std::function<Found(const KeyringUse &)> work, QObject *context,
                 Done done);

    // In the thread.
    KeyringState findKeyring(const KeyringUse &use);
    Found readFrom(KeyringState keyring, const KeyringUse &use);
    Found exchange(const Edit &edit, const KeyringUse &use);
    Found exchangeIn(KeyringState keyring, const Edit &edit, const KeyringUse &use);
    void postpone(const Edit &edit, Found &found);
    bool isDone(const Edit &edit, const Change &change, KeyringState keyring, const KeyringUse &use);
    bool joinWaiting(const Edit &edit);

    const QString m_file;
    const QString m_waiting; ///< its file
    const bool m_fileOnly;
    QThread m_thread;
    QObject m_worker;            ///< lives in the thread
    DesktopKeyring m_keyring;    ///< the thread's
    std::vector<Cancel> m_calls; ///< that have not been answered
};

} // namespace mevo
