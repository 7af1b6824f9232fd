#include "platform/linux/DesktopSecretStore.h"

#include "platform/linux/SecretFile.h"

#include <QPointer>
#include <QTimer>

#include <algorithm>

// GLib has members of this name.
#undef signals
#include <gio/gio.h>

namespace mevo {

namespace {

constexpr int lastWritesMs = 2000;

} // namespace

DesktopSecretStore::DesktopSecretStore(QString file, bool fileOnly)
    : m_file(std::move(file))
    , m_fileOnly(fileOnly)
{
    m_worker.moveToThread(&m_thread);
    m_thread.setObjectName(QStringLiteral("secrets"));
}

DesktopSecretStore::~DesktopSecretStore()
{
    if (!m_thread.isRunning()) {
        return;
    }
    // Behind the calls that wait.
    QMetaObject::invokeMethod(
        &m_worker, [] { QThread::currentThread()->quit(); }, Qt::QueuedConnection);
    if (!m_thread.wait(lastWritesMs)) {
        for (const Cancel &call : m_calls) {
            g_cancellable_cancel(call.get());
        }
        m_thread.wait();
    }
}

void DesktopSecretStore::enqueue(KeyringPrompt prompt, std::function<Found(const KeyringUse &)> work,
                                 QObject *context, Done done)
{
    if (!m_thread.isRunning()) {
        m_thread.start();
    }
    const Cancel cancel(g_cancellable_new(), [](GCancellable *made) { g_object_unref(made); });
    m_calls.push_back(cancel);
    const auto begin = [this, weak = std::weak_ptr<GCancellable>(cancel)] {
        QTimer::singleShot(answerLimitMs, this, [weak] {
            if (const Cancel late = weak.lock()) {
                g_cancellable_cancel(late.get());
            }
        });
    };
    const QPointer<QObject> asker(context);
    const auto finish = [this, cancel, asker, done = std::move(done)](const Found &found) {
        m_calls.erase(std::remove(m_calls.begin(), m_calls.end(), cancel), m_calls.end());
        if (!asker.isNull()) {
            done(found);
        }
    };
    QMetaObject::invokeMethod(
        &m_worker,
        [this, cancel, prompt, begin, finish, work = std::move(work)] {
            QMetaObject::invokeMethod(this, begin, Qt::QueuedConnection);
            const Found found = work({cancel.get(), prompt});
            QMetaObject::invokeMethod(
                this, [finish, found] { finish(found); }, Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

void DesktopSecretStore::read(KeyringPrompt prompt, QObject *context, Done done)
{
    enqueue(
        prompt, [this](const KeyringUse &use) { return readFrom(findKeyring(use), use); }, context,
        std::move(done));
}

void DesktopSecretStore::change(KeyringPrompt prompt, Edit edit, QObject *context, Done done)
{
    enqueue(
        prompt, [this, edit = std::move(edit)](const KeyringUse &use) { return exchange(edit, use); },
        context, std::move(done));
}

KeyringState DesktopSecretStore::findKeyring(const KeyringUse &use)
{
    return m_fileOnly ? KeyringState::Absent : m_keyring.find(use);
}

SecretStore::Found DesktopSecretStore::readFrom(KeyringState keyring, const KeyringUse &use)
{
    Found found;
    if (keyring == KeyringState::Unknown) {
        return found;
    }
    if (keyring == KeyringState::Present) {
        const std::optional<QByteArray> text = m_keyring.read(use);
        if (!text) {
            return found;
        }
        if (!text->isEmpty()) {
            found.texts.append(*text);
            found.place = SecretPlace::Desktop;
        }
    }
    // With a keyring a file is of a time without it, and newer: what is put into the keyring clears the file.
    const std::optional<QByteArray> text = readSecretFile(m_file);
    if (text && !text->isEmpty()) {
        found.place = found.texts.isEmpty() ? SecretPlace::File : found.place;
        found.texts.append(*text);
    }
    found.answered = text.has_value();
    return found;
}

SecretStore::Found DesktopSecretStore::exchange(const Edit &edit, const KeyringUse &use)
{
    const KeyringState keyring = findKeyring(use);
    if (keyring == KeyringState::Present && !m_keyring.open(use)) {
        return {};
    }
    const Found old = readFrom(keyring, use);
    if (!old.answered) {
        return {};
    }
    const Change change = edit(old.texts);
    if (!isDone(change, keyring, use)) {
        return {};
    }
    if (change.text.isEmpty()) {
        return {true, SecretPlace::Nowhere, {}};
    }
    const bool desktop = keyring == KeyringState::Present;
    return {true, desktop ? SecretPlace::Desktop : SecretPlace::File, {change.text}};
}

bool DesktopSecretStore::isDone(const Change &change, KeyringState keyring, const KeyringUse &use)
{
    const bool desktop = keyring == KeyringState::Present;
    for (const QByteArray &text : change.aside) {
        if (desktop ? !m_keyring.setAside(text, use) : !setSecretFileAside(m_file, text)) {
            return false;
        }
    }
    if (!desktop) {
        return writeSecretFile(m_file, change.text);
    }
    // A file that stays would be taken for newer than what the keyring holds.
    return isSecretFileRemovable(m_file) &&
           (change.text.isEmpty() ? m_keyring.clear(use) : m_keyring.write(change.text, use)) &&
           writeSecretFile(m_file, {});
}

} // namespace mevo
