#include "platform/linux/DesktopSecretStore.h"

#include "platform/linux/SecretFile.h"

#include <QDebug>
#include <QFileInfo>
#include <QPointer>
#include <QTimer>

#include <algorithm>

// GLib has members of this name.
#undef signals
#include <libsecret/secret.h>

namespace mevo {

namespace {

constexpr int lastWritesMs = 2000;

const SecretSchema &schema()
{
    static const SecretSchema schema = [] {
        SecretSchema made = {};
        made.name = "org.mevoinput.Accounts";
        made.flags = SECRET_SCHEMA_NONE;
        made.attributes[0] = {"application", SECRET_SCHEMA_ATTRIBUTE_STRING};
        return made;
    }();
    return schema;
}

/// The attributes by which the secret is found again.
class Attributes
{
public:
    Attributes()
        : m_table(secret_attributes_build(&schema(), "application", "mevoinput", nullptr))
    {
    }
    ~Attributes() { g_hash_table_unref(m_table); }
    Q_DISABLE_COPY(Attributes)
    GHashTable *table() const { return m_table; }

private:
    GHashTable *const m_table;
};

/// The outcome of a call that may fail.
class CallError
{
public:
    CallError() = default;
    ~CallError() { g_clear_error(&m_error); }
    Q_DISABLE_COPY(CallError)
    GError **out() { return &m_error; }
    explicit operator bool() const { return m_error != nullptr; }
    QString text() const { return m_error == nullptr ? QString() : QString::fromUtf8(m_error->message); }

private:
    GError *m_error = nullptr;
};

/// Without a bus of the session's own GLib would start one.
bool hasSessionBus()
{
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

bool hasService(GCancellable *cancel)
{
    if (!hasSessionBus()) {
        return false;
    }
    CallError error;
    SecretService *const service = secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, cancel, error.out());
    if (service == nullptr) {
        qInfo().noquote() << "Secrets: the desktop keeps none:" << error.text();
        return false;
    }
    g_object_unref(service);
    return true;
}

std::optional<QByteArray> readFromDesktop(GCancellable *cancel)
{
    CallError error;
    char *const found = secret_password_lookupv_sync(&schema(), Attributes().table(), cancel, error.out());
    if (error) {
        qWarning().noquote() << "Secrets: the desktop does not give them:" << error.text();
        return std::nullopt;
    }
    QByteArray secret(found);
    secret_password_free(found);
    return secret;
}

bool writeToDesktop(const QByteArray &secret, GCancellable *cancel)
{
    CallError error;
    if (secret.isEmpty()) {
        secret_password_clearv_sync(&schema(), Attributes().table(), cancel, error.out());
    } else {
        secret_password_storev_sync(&schema(), Attributes().table(), SECRET_COLLECTION_DEFAULT,
                                    "MEVOInput accounts", secret.constData(), cancel, error.out());
    }
    if (error) {
        qWarning().noquote() << "Secrets: the desktop does not take them:" << error.text();
    }
    return !error;
}

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

void DesktopSecretStore::enqueue(std::function<void(GCancellable *)> work, QObject *context,
                                 std::function<void()> done)
{
    if (!m_thread.isRunning()) {
        m_thread.start();
    }
    const Cancel cancel(g_cancellable_new(), [](GCancellable *made) { g_object_unref(made); });
    m_calls.push_back(cancel);
    QTimer::singleShot(answerLimitMs, this, [weak = std::weak_ptr<GCancellable>(cancel)] {
        if (const Cancel late = weak.lock()) {
            g_cancellable_cancel(late.get());
        }
    });
    const QPointer<QObject> asker(context);
    const auto finish = [this, cancel, asker, done = std::move(done)] {
        m_calls.erase(std::remove(m_calls.begin(), m_calls.end(), cancel), m_calls.end());
        if (!asker.isNull()) {
            done();
        }
    };
    QMetaObject::invokeMethod(
        &m_worker,
        [this, cancel, finish, work = std::move(work)] {
            work(cancel.get());
            QMetaObject::invokeMethod(this, finish, Qt::QueuedConnection);
        },
        Qt::QueuedConnection);
}

void DesktopSecretStore::read(QObject *context, std::function<void(const Found &)> done)
{
    const auto found = std::make_shared<Found>();
    enqueue(
        [this, found](GCancellable *cancel) {
            const bool desktop = !m_fileOnly && hasService(cancel);
            std::optional<QByteArray> secret;
            SecretPlace place = SecretPlace::Desktop;
            if (desktop) {
                secret = readFromDesktop(cancel);
            }
            if (!desktop || (secret && secret->isEmpty())) {
                secret = readSecretFile(m_file); // of a time without a keyring, too
                place = SecretPlace::File;
            }
            found->answered = secret.has_value();
            found->secret = secret.value_or(QByteArray());
            found->place = found->secret.isEmpty() ? SecretPlace::Nowhere : place;
        },
        context, [found, done = std::move(done)] { done(*found); });
}

void DesktopSecretStore::write(const QByteArray &secret, QObject *context,
                               std::function<void(SecretPlace)> done)
{
    const auto place = std::make_shared<SecretPlace>(SecretPlace::Nowhere);
    enqueue(
        [this, secret, place](GCancellable *cancel) {
            if (m_fileOnly || !hasService(cancel)) {
                *place = writeSecretFile(m_file, secret) ? SecretPlace::File : SecretPlace::Nowhere;
            } else if (writeToDesktop(secret, cancel) && writeSecretFile(m_file, {})) {
                *place = SecretPlace::Desktop;
            }
        },
        context, [place, done = std::move(done)] { done(*place); });
}

} // namespace mevo
