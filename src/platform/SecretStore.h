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
        /// Where it is kept; without an answer the place that gives none.
        SecretPlace place = SecretPlace::Nowhere;
        /// What is kept, the older one first. There are two when a keyring is back after a time without it.
        /// Without an answer what could be read of it.
        QList<QByteArray> texts;
        /// The last one is of a change that could not be done, and waits for a later one.
        bool waiting = false;
        /// The desktop has no keyring so far.
        bool keyringAbsent = false;
    };
    using Done = std::function<void(const Found &found)>;
    virtual void read(KeyringPrompt prompt, QObject *context, Done done) = 0;

    /// What becomes of the kept texts.
    struct Change
    {
        QByteArray text;         ///< is kept in their place; empty for none
        QList<QByteArray> aside; ///< what is to stay beside it
    };
    /// Both touch nothing of others: they run in a thread of the store's.
    struct Edit
    {
        std::function<Change(const QList<QByteArray> &texts)> make;
        /// While it is done, and where it could not be: the text that is to wait, of what waits already.
        /// Called again with its own outcome it changes nothing.
        std::function<QByteArray(const QByteArray &waiting)> postpone;
    };
    /// Reads what is kept and keeps what `edit` makes of it, which then waits no more. Where that is not
    /// answered it has not been done whole: the old text may still be there, or beside the new one, and the
    /// postponed one waits, in a file of the user's, if the answer says so. The end of the store ends in a
    /// moment what it is at, in one of these two ways.
    virtual void change(KeyringPrompt prompt, Edit edit, QObject *context, Done done) = 0;
};

} // namespace mevo
