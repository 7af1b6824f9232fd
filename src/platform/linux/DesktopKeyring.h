#pragma once

#include "platform/SecretStore.h"

#include <QString>

#include <memory>
#include <optional>
#include <vector>

struct _GCancellable;
struct _SecretItem;
struct _SecretService;

namespace mevo {

/// Whether the desktop has a keyring. Absent: nobody is it, and the bus knows of none that it could start.
/// Unknown: it did not answer, or failed, so that there may well be one.
enum class KeyringState { Absent, Present, Unknown };

/// What a use of the keyring goes by.
struct KeyringUse
{
    _GCancellable *cancel = nullptr;
    KeyringPrompt prompt = KeyringPrompt::None;
};

/// The program's secret in the desktop's keyring (the D-Bus interface org.freedesktop.Secret.Service).
/// Every call blocks, all come from one thread. What fails is logged, once for each reason.
class DesktopKeyring
{
public:
    /// Before the other calls, which go to what it has found. A keyring that has been there in this run is
    /// not absent later: it still holds what it was given.
    KeyringState find(const KeyringUse &use);

    /// What is kept, empty for nothing. Nothing when it stays locked or fails.
    std::optional<QByteArray> read(const KeyringUse &use);
    /// New secrets can be put into it, with the user's unlocking if need be.
    bool open(const KeyringUse &use);
    bool write(const QByteArray &text, const KeyringUse &use);
    /// Takes away all that is kept.
    bool clear(const KeyringUse &use);
    /// Keeps a text beside, where it is found by the user but not by read().
    bool setAside(const QByteArray &text, const KeyringUse &use);

private:
    struct Unref
    {
        void operator()(void *object) const;
    };
    using Items = std::vector<std::unique_ptr<_SecretItem, Unref>>;
    /// Nothing when one of them stays locked.
    std::optional<Items> search(const KeyringUse &use);
    bool store(const QByteArray &text, const char *application, const char *label, const KeyringUse &use);
    /// The next find() looks anew, as the service may be another one by then.
    void fail(const QString &what);
    void tell(const QString &what);

    std::unique_ptr<_SecretService, Unref> m_service;
    bool m_seen = false;
    QString m_told;
};

} // namespace mevo
