#include "platform/linux/DesktopKeyring.h"

#include "base/LogText.h"
#include "platform/linux/SecretFile.h"

#include <QDebug>
#include <QFileInfo>

#include <algorithm>

// GLib has members of this name.
#undef signals
#include <libsecret/secret.h>

namespace mevo {

namespace {

constexpr const char *ownApplication = "mevoinput";
constexpr const char *serviceName = "org.freedesktop.secrets";

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

private:
    GError *m_error = nullptr;
};

/// Without a bus of the session's own GLib would start one.
bool hasSessionBus()
{
    return !qEnvironmentVariableIsEmpty("DBUS_SESSION_BUS_ADDRESS") ||
           QFileInfo::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

/// The session's bus, which the end of does not end the program; null when it is not to be reached.
std::unique_ptr<GDBusConnection, decltype(&g_object_unref)> sessionBus(GCancellable *cancel)
{
    CallError error;
    GDBusConnection *const bus = g_bus_get_sync(G_BUS_TYPE_SESSION, cancel, error.out());
    if (bus != nullptr) {
        g_dbus_connection_set_exit_on_close(bus, FALSE);
    }
    return {bus, &g_object_unref};
}

/// Asks the bus itself, whose only result has the type `type`; null when it does not answer.
std::unique_ptr<GVariant, decltype(&g_variant_unref)>
askBus(GDBusConnection *bus, const char *method, GVariant *parameters, const char *type, GCancellable *cancel)
{
    CallError error;
    return {g_dbus_connection_call_sync(bus, "org.freedesktop.DBus", "/org/freedesktop/DBus",
                                        "org.freedesktop.DBus", method, parameters, G_VARIANT_TYPE(type),
                                        G_DBUS_CALL_FLAGS_NONE, -1, cancel, error.out()),
            &g_variant_unref};
}

/// The bus says that nobody is the keyring and that it could start none. That a start of one has failed, or
/// that no bus answers, says nothing of the sort.
bool isServiceUnknown(GDBusConnection *bus, GCancellable *cancel)
{
    const auto owned = askBus(bus, "NameHasOwner", g_variant_new("(s)", serviceName), "(b)", cancel);
    const auto names = askBus(bus, "ListActivatableNames", nullptr, "(as)", cancel);
    if (owned == nullptr || names == nullptr) {
        return false;
    }
    gboolean isOwned = FALSE;
    g_variant_get(owned.get(), "(b)", &isOwned);
    const std::unique_ptr<GVariant, decltype(&g_variant_unref)> list(
        g_variant_get_child_value(names.get(), 0), &g_variant_unref);
    const std::unique_ptr<const gchar *, decltype(&g_free)> known(g_variant_get_strv(list.get(), nullptr),
                                                                  &g_free);
    return isOwned == 0 && g_strv_contains(known.get(), serviceName) == 0;
}

} // namespace

void DesktopKeyring::Unref::operator()(void *object) const
{
    g_object_unref(object);
}

KeyringState DesktopKeyring::find(const KeyringUse &use)
{
    m_service.reset();
    if (!hasSessionBus()) {
        tell(QStringLiteral("there is no bus for one"));
        return m_seen ? KeyringState::Unknown : KeyringState::Absent;
    }
    const auto bus = sessionBus(use.cancel);
    CallError error;
    m_service.reset(secret_service_get_sync(SECRET_SERVICE_OPEN_SESSION, use.cancel, error.out()));
    if (m_service != nullptr) {
        m_seen = true;
        return KeyringState::Present;
    }
    if (!m_seen && bus != nullptr && isServiceUnknown(bus.get(), use.cancel)) {
        tell(QStringLiteral("there is none"));
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
    // One of the same name is exchanged.
    const QByteArray name = QByteArray(ownApplication) + "-unreadable-" + secretAsideName(text).toLatin1();
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
