#include "platform/linux/DesktopKeyring.h"

#include "base/LogText.h"

#include <QDateTime>
#include <QDebug>
#include <QFileInfo>

#include <algorithm>

// GLib has members of this name.
#undef signals
#include <libsecret/secret.h>

namespace mevo {

namespace {

constexpr const char *ownApplication = "mevoinput";

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

/// The attributes by which a secret is found again.
class Attributes
{
public:
    explicit Attributes(const char *application)
        : m_table(secret_attributes_build(&schema(), "application", application, nullptr))
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
    QString text() const
    {
        return m_error == nullptr ? QString() : logText(QString::fromUtf8(m_error->message));
    }
    /// The bus is there and knows of no such service.
    bool saysAbsent() const
    {
        return g_error_matches(m_error, G_DBUS_ERROR, G_DBUS_ERROR_SERVICE_UNKNOWN) != 0 ||
               g_error_matches(m_error, G_DBUS_ERROR, G_DBUS_ERROR_NAME_HAS_NO_OWNER) != 0 ||
               g_error_matches(m_error, G_DBUS_ERROR, G_DBUS_ERROR_SPAWN_SERVICE_NOT_FOUND) != 0;
    }

private:
    GError *m_error = nullptr;
};

/// Without a bus of the session's own GLib would start one.
bool hasSessionBus()
{
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

/// GLib ends a program whose session bus goes.
void stayWithoutBus(GCancellable *cancel)
{
    CallError error;
    GDBusConnection *const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, cancel, error.out());
    if (bus != nullptr) {
        g_dbus_connection_set_exit_on_close(bus, FALSE);
        g_object_unref(bus);
    }
}

} // namespace

void DesktopKeyring::Unref::operator()(void *object) const
{
    g_object_unref(object);
}

KeyringState DesktopKeyring::find(const KeyringUse &use)
{
    m_service.reset();
    CallError error;
    if (hasSessionBus()) {
        stayWithoutBus(use.cancel);
        m_service.reset(secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, use.cancel, error.out()));
        if (m_service != nullptr) {
            m_seen = true;
            return KeyringState::Present;
        }
    }
    if (!m_seen && (!error || error.saysAbsent())) {
        tell(QStringLiteral("there is none: ") + error.text());
        return KeyringState::Absent;
    }
    fail(QStringLiteral("it does not answer: ") + error.text());
    return KeyringState::Unknown;
}

std::optional<DesktopKeyring::Items> DesktopKeyring::search(const KeyringUse &use)
{
    int flags = SECRET_SEARCH_ALL | SECRET_SEARCH_LOAD_SECRETS;
    if (use.prompt == KeyringPrompt::Allowed) {
        flags |= SECRET_SEARCH_UNLOCK;
    }
    CallError error;
    GList *const list =
        secret_service_search_sync(m_service.get(), &schema(), Attributes(ownApplication).table(),
                                   SecretSearchFlags(flags), use.cancel, error.out());
    Items items;
    for (GList *each = list; each != nullptr; each = each->next) {
        items.emplace_back(SECRET_ITEM(each->data));
    }
    g_list_free(list);
    if (error) {
        fail(QStringLiteral("it does not look for them: ") + error.text());
        return std::nullopt;
    }
    // A user who does not unlock it is no error.
    if (std::any_of(items.begin(), items.end(),
                    [](const auto &item) { return secret_item_get_locked(item.get()) != 0; })) {
        tell(QStringLiteral("it stays locked"));
        return std::nullopt;
    }
    return items;
}

std::optional<QByteArray> DesktopKeyring::read(const KeyringUse &use)
{
    const std::optional<Items> items = search(use);
    if (!items) {
        return std::nullopt;
    }
    // There can be more than one when the default keyring has become another.
    const auto newest =
        std::max_element(items->begin(), items->end(), [](const auto &first, const auto &second) {
            return secret_item_get_modified(first.get()) < secret_item_get_modified(second.get());
        });
    if (newest == items->end()) {
        return QByteArray();
    }
    SecretValue *const value = secret_item_get_secret(newest->get());
    if (value == nullptr) {
        fail(QStringLiteral("it does not give them"));
        return std::nullopt;
    }
    gsize length = 0;
    const char *const text = secret_value_get(value, &length);
    const QByteArray secret(text, int(length));
    secret_value_unref(value);
    return secret;
}

bool DesktopKeyring::open(const KeyringUse &use)
{
    CallError error;
    const std::unique_ptr<SecretCollection, Unref> collection(secret_collection_for_alias_sync(
        m_service.get(), SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE, use.cancel, error.out()));
    if (error) {
        fail(QStringLiteral("it does not tell whether it is locked: ") + error.text());
        return false;
    }
    bool open = use.prompt == KeyringPrompt::Allowed; // one that is not there yet is made with a prompt
    if (collection != nullptr) {
        open = secret_collection_get_locked(collection.get()) == 0;
        if (!open && use.prompt == KeyringPrompt::Allowed) {
            GList *const one = g_list_append(nullptr, collection.get());
            open = secret_service_unlock_sync(m_service.get(), one, use.cancel, nullptr, error.out()) == 1;
            g_list_free(one);
        }
    }
    if (!open) {
        tell(QStringLiteral("it stays locked"));
    }
    return open;
}

bool DesktopKeyring::store(const QByteArray &text, const char *application, const char *label,
                           const KeyringUse &use)
{
    CallError error;
    SecretValue *const value = secret_value_new(text.constData(), text.size(), "text/plain");
    secret_service_store_sync(m_service.get(), &schema(), Attributes(application).table(),
                              SECRET_COLLECTION_DEFAULT, label, value, use.cancel, error.out());
    secret_value_unref(value);
    if (error) {
        fail(QStringLiteral("it does not take them: ") + error.text());
    }
    return !error;
}

bool DesktopKeyring::write(const QByteArray &text, const KeyringUse &use)
{
    return store(text, ownApplication, "MEVOInput accounts", use);
}

bool DesktopKeyring::clear(const KeyringUse &use)
{
    std::optional<Items> items = search(use);
    if (!items) {
        return false;
    }
    for (const auto &item : *items) {
        CallError error;
        secret_item_delete_sync(item.get(), use.cancel, error.out());
        if (error) {
            fail(QStringLiteral("it does not take them away: ") + error.text());
            return false;
        }
    }
    if (!items->empty()) {
        items = search({use.cancel, KeyringPrompt::None});
    }
    return items && items->empty();
}

bool DesktopKeyring::setAside(const QByteArray &text, const KeyringUse &use)
{
    const QByteArray name = QByteArray(ownApplication) + "-unreadable-" +
                            QDateTime::currentDateTimeUtc().toString(Qt::ISODateWithMs).toLatin1();
    return store(text, name.constData(), "MEVOInput accounts (unreadable)", use);
}

void DesktopKeyring::fail(const QString &what)
{
    tell(what);
    secret_service_disconnect();
}

void DesktopKeyring::tell(const QString &what)
{
    if (what != m_told) {
        m_told = what;
        qInfo().noquote() << "Secrets: the desktop's keyring:" << what;
    }
}

} // namespace mevo
