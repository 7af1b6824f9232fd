#include "platform/linux/DesktopSecretStore.h"

#include "platform/linux/SecretFile.h"

#include <QFile>
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
    , m_waiting(m_file + QStringLiteral(".waiting"))
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
    found.keyringAbsent = keyring == KeyringState::Absent && !m_fileOnly;
    // With a keyring a file is of a time without it, and newer: what is put into the keyring clears the file.
    const std::optional<QByteArray> file = readSecretFile(m_file);
    const std::optional<QByteArray> waiting = readSecretFile(m_waiting);
    found.waiting = waiting && !waiting->isEmpty();
    for (const std::optional<QByteArray> &text : {file, waiting}) {
        if (text && !text->isEmpty()) {
            found.texts.append(*text);
        }
    }
    found.place = SecretPlace::Desktop;
    if (keyring == KeyringState::Unknown) {
        return found;
    }
    QByteArray desktop;
    if (keyring == KeyringState::Present) {
        const std::optional<QByteArray> text = m_keyring.read(use);
        if (!text) {
            return found;
        }
        desktop = *text;
    }
    found.answered = file && waiting;
    if (!desktop.isEmpty()) {
        found.texts.prepend(desktop);
    }
    const bool nowhere = found.answered && found.texts.isEmpty();
    const bool inDesktop = found.answered && !desktop.isEmpty();
    found.place = nowhere ? SecretPlace::Nowhere : inDesktop ? SecretPlace::Desktop : SecretPlace::File;
    return found;
}

SecretStore::Found DesktopSecretStore::exchange(const Edit &edit, const KeyringUse &use)
{
    Found found = exchangeIn(findKeyring(use), edit, use);
    if (!found.answered) {
        postpone(edit, found);
    }
    return found;
}

SecretStore::Found DesktopSecretStore::exchangeIn(KeyringState keyring, const Edit &edit,
                                                  const KeyringUse &use)
{
    const bool desktop = keyring == KeyringState::Present;
    const bool opened = !desktop || m_keyring.open(use);
    Found found = readFrom(opened ? keyring : KeyringState::Unknown, use);
    if (!found.answered) {
        return found;
    }
    const Change change = edit.make(found.texts);
    found.answered = isDone(edit, change, keyring, use);
    found.place = desktop ? SecretPlace::Desktop : SecretPlace::File;
    if (found.answered) {
        found.waiting = false;
        found.texts.clear();
        if (change.text.isEmpty()) {
            found.place = SecretPlace::Nowhere;
        } else {
            found.texts.append(change.text);
        }
    }
    return found;
}

/// What cannot be done now is not lost, whatever becomes of this run.
void DesktopSecretStore::postpone(const Edit &edit, Found &found)
{
    const std::optional<QByteArray> before = readSecretFile(m_waiting);
    const QByteArray text = before ? edit.postpone(*before) : QByteArray();
    if (!before || (text != *before && !writeSecretFile(m_waiting, text))) {
        found.waiting = false;
        return;
    }
    if (found.waiting) {
        found.texts.removeLast();
    }
    found.waiting = !text.isEmpty();
    if (found.waiting) {
        found.texts.append(text);
    }
}

/// Where there is more than one text the change waits, too, while it is done: a run that ends between the
/// places would leave an older text behind that the next one takes for the newest.
bool DesktopSecretStore::joinWaiting(const Edit &edit)
{
    const std::optional<QByteArray> before = readSecretFile(m_waiting);
    return before && writeSecretFile(m_waiting, edit.postpone(*before));
}

bool DesktopSecretStore::isDone(const Edit &edit, const Change &change, KeyringState keyring,
                                const KeyringUse &use)
{
    const bool desktop = keyring == KeyringState::Present;
    // A file that stays would be taken for newer than what is kept now.
    if (!isSecretFileRemovable(m_waiting) || (desktop && !isSecretFileRemovable(m_file))) {
        return false;
    }
    for (const QByteArray &text : change.aside) {
        if (desktop ? !m_keyring.setAside(text, use) : !setSecretFileAside(m_file, text)) {
            return false;
        }
    }
    if ((QFile::exists(m_waiting) || (desktop && QFile::exists(m_file))) && !joinWaiting(edit)) {
        return false;
    }
    if (!desktop) {
        return writeSecretFile(m_file, change.text) && writeSecretFile(m_waiting, {});
    }
    return (change.text.isEmpty() ? m_keyring.clear(use) : m_keyring.write(change.text, use)) &&
           writeSecretFile(m_file, {}) && writeSecretFile(m_waiting, {});
}

} // namespace mevo
