#pragma once

#include <QByteArray>
#include <QList>

#include <functional>

class QObject;

namespace mevo {

/// Where the user's secrets are kept.
enum class SecretPlace { Nowhere, Desktop, File };

/// Whether the desktop may ask the user to unlock his keyring.
enum class KeyringPrompt { None, Allowed };

/// One text of the user's that nobody else is to read. No call blocks: the answer comes from the event loop
/// of the thread that asks, in the order of the calls, and not at all once `context`, of the same thread, has
/// gone.
class SecretStore
{
public:
    virtual ~SecretStore() = default;

    struct Found
    {
        bool answered = false; ///< false when the place stays locked, fails, or does not answer in time
        SecretPlace place = SecretPlace::Nowhere;
        /// What is kept, the older one first. There are two when a keyring is back after a time without it.
        QList<QByteArray> texts;
    };
    using Done = std::function<void(const Found &found)>;
    virtual void read(KeyringPrompt prompt, QObject *context, Done done) = 0;

    /// What becomes of the kept texts.
    struct Change
    {
        QByteArray text;         ///< is kept in their place; empty for none
        QList<QByteArray> aside; ///< of the old ones, those that are to stay beside it
    };
    /// Touches nothing of others: it runs in a thread of the store's.
    using Edit = std::function<Change(const QList<QByteArray> &texts)>;
    /// Reads what is kept and keeps what `edit` makes of it. Where that is not answered it has not been done
    /// whole, and the old text may still be there, or beside the new one.
    virtual void change(KeyringPrompt prompt, Edit edit, QObject *context, Done done) = 0;
};

} // namespace mevo
