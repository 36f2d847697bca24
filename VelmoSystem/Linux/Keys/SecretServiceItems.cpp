#include "VelmoSystem/Linux/Keys/SecretServiceItems.h"

#include <QFile>

#include <condition_variable>
#include <functional>
#include <memory>
#include <mutex>
#include <thread>

// Creating an item without a prompt needs the object paths, which libsecret keeps in this part.
#define SECRET_API_SUBJECT_TO_CHANGE
#include <libsecret/secret.h>

namespace velmo {
namespace {

constexpr std::chrono::seconds longestCall{5};
constexpr const char *serviceName = "org.freedesktop.secrets";

struct Release {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GVariant *value) const { g_variant_unref(value); }
    void operator()(GHashTable *table) const { g_hash_table_unref(table); }
    void operator()(SecretValue *value) const { secret_value_unref(value); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Release>;

/// Cancels the calls that it is given to when they take too long, or when nobody needs them.
class Deadline {
public:
    explicit Deadline(const std::stop_token &unneeded)
        : m_cancellable(g_cancellable_new()),
          m_stopped(unneeded, [this] { g_cancellable_cancel(m_cancellable.get()); }),
          m_watch([this](const std::stop_token &stop) { watch(stop); })
    {
    }

    GCancellable *cancellable() const { return m_cancellable.get(); }

private:
    void watch(const std::stop_token &stop) const
    {
        std::mutex mutex;
        std::condition_variable_any stopped;
        std::unique_lock lock(mutex);
        stopped.wait_for(lock, stop, longestCall, [] { return false; });
        if (!stop.stop_requested())
            g_cancellable_cancel(m_cancellable.get());
    }

    Owned<GCancellable> m_cancellable;
    std::stop_callback<std::function<void()>> m_stopped;
    std::jthread m_watch;
};

QStringView keyring()
{
    return PlatformNames::keyring;
}

KeyItemStore::Refusal lockedRefusal()
{
    return {KeyItemStore::interactionNotAllowed,
            QStringLiteral("O %1 está bloqueado. Desbloqueie-o.").arg(keyring())};
}

KeyItemStore::Refusal refusal(const GError &error)
{
    if (g_error_matches(&error, SECRET_ERROR, SECRET_ERROR_IS_LOCKED))
        return lockedRefusal();
    if (g_error_matches(&error, G_IO_ERROR, G_IO_ERROR_CANCELLED))
        return {KeyItemStore::notAvailable,
                QStringLiteral("O %1 não respondeu a tempo.").arg(keyring())};
    return {error.code,
            QStringLiteral("O %1 falhou (%2).").arg(keyring(), QString::fromUtf8(error.message))};
}

/// Takes the place of a `GError **` argument and throws what was put there.
class Outcome {
public:
    ~Outcome() { g_clear_error(&m_error); }

    operator GError **() { return &m_error; }
    void check() const
    {
        if (m_error)
            throw refusal(*m_error);
    }

private:
    GError *m_error = nullptr;
};

/// Looking for a bus where none is announced would start one of its own.
bool hasSessionBus()
{
    return qEnvironmentVariableIsSet("DBUS_SESSION_BUS_ADDRESS") ||
           QFile::exists(qEnvironmentVariable("XDG_RUNTIME_DIR") + QStringLiteral("/bus"));
}

/// Nothing where there is no bus.
Owned<GDBusConnection> openBus(const Deadline &deadline)
{
    if (!hasSessionBus())
        return nullptr;
    Outcome outcome;
    Owned<GDBusConnection> bus(g_bus_get_sync(G_BUS_TYPE_SESSION, deadline.cancellable(), outcome));
    // By default the end of the bus is the end of the process, and of what it hasn't saved.
    if (bus)
        g_dbus_connection_set_exit_on_close(bus.get(), FALSE);
    return bus;
}

Owned<SecretService> openService(const Deadline &deadline)
{
    const auto bus = openBus(deadline);
    if (!bus)
        throw KeyItemStore::Refusal(KeyItemStore::notAvailable,
                                    QStringLiteral("A sessão não tem um barramento D-Bus."));
    Outcome outcome;
    Owned<SecretService> service(secret_service_open_sync(SECRET_TYPE_SERVICE, serviceName,
                                                          SECRET_SERVICE_OPEN_SESSION,
                                                          deadline.cancellable(), outcome));
    outcome.check();
    return service;
}

/// The item without its secret, if there is one.
Owned<SecretItem> search(SecretService *service, const KeyItemStore::Item &item,
                         const Deadline &deadline)
{
    const Owned<GHashTable> attributes(
        g_hash_table_new_full(g_str_hash, g_str_equal, g_free, g_free));
    g_hash_table_insert(attributes.get(), g_strdup("service"),
                        g_strdup(qUtf8Printable(item.service)));
    g_hash_table_insert(attributes.get(), g_strdup("account"),
                        g_strdup(qUtf8Printable(item.account)));
    Outcome outcome;
    GList *list = secret_service_search_sync(service, nullptr, attributes.get(), SECRET_SEARCH_NONE,
                                             deadline.cancellable(), outcome);
    outcome.check();
    Owned<SecretItem> first(list ? SECRET_ITEM(g_object_ref(list->data)) : nullptr);
    g_list_free_full(list, g_object_unref);
    return first;
}

/// Nothing if the user has no default keyring.
Owned<SecretCollection> defaultCollection(SecretService *service, const Deadline &deadline)
{
    Outcome outcome;
    Owned<SecretCollection> collection(
        secret_collection_for_alias_sync(service, SECRET_COLLECTION_DEFAULT, SECRET_COLLECTION_NONE,
                                         deadline.cancellable(), outcome));
    outcome.check();
    return collection;
}

/// As `defaultCollection`, but refused if it is locked, as it may hide its items then.
Owned<SecretCollection> openDefaultCollection(SecretService *service, const Deadline &deadline)
{
    auto collection = defaultCollection(service, deadline);
    if (collection && secret_collection_get_locked(collection.get()))
        throw lockedRefusal();
    return collection;
}

GVariant *properties(const KeyItemStore::Item &item)
{
    GVariantBuilder attributes;
    g_variant_builder_init(&attributes, G_VARIANT_TYPE("a{ss}"));
    g_variant_builder_add(&attributes, "{ss}", "service", qUtf8Printable(item.service));
    g_variant_builder_add(&attributes, "{ss}", "account", qUtf8Printable(item.account));
    GVariantBuilder all;
    g_variant_builder_init(&all, G_VARIANT_TYPE("a{sv}"));
    g_variant_builder_add(&all, "{sv}", "org.freedesktop.Secret.Item.Label",
                          g_variant_new_string(qUtf8Printable(item.label)));
    g_variant_builder_add(&all, "{sv}", "org.freedesktop.Secret.Item.Attributes",
                          g_variant_builder_end(&attributes));
    return g_variant_builder_end(&all);
}

void createItem(SecretService *service, SecretCollection *collection,
                const KeyItemStore::Item &item, const QByteArray &secret, const Deadline &deadline)
{
    const Owned<SecretValue> value(
        secret_value_new(secret.constData(), secret.size(), "application/octet-stream"));
    Outcome outcome;
    const Owned<GVariant> reply(g_dbus_connection_call_sync(
        g_dbus_proxy_get_connection(G_DBUS_PROXY(service)), serviceName,
        g_dbus_proxy_get_object_path(G_DBUS_PROXY(collection)), "org.freedesktop.Secret.Collection",
        "CreateItem",
        g_variant_new("(@a{sv}@(oayays)b)", properties(item),
                      secret_service_encode_dbus_secret(service, value.get()), FALSE),
        G_VARIANT_TYPE("(oo)"), G_DBUS_CALL_FLAGS_NONE, -1, deadline.cancellable(), outcome));
    outcome.check();
    const char *created = nullptr;
    const char *prompt = nullptr;
    g_variant_get(reply.get(), "(&o&o)", &created, &prompt);
    // The service wants to ask the user first; a prompt that nobody starts makes no item.
    if (qstrcmp(created, "/") == 0)
        throw lockedRefusal();
}

Owned<GVariant> askBus(GDBusConnection *bus, const char *method, GVariant *arguments,
                       const char *replyType, const Deadline &deadline)
{
    Outcome outcome;
    Owned<GVariant> reply(g_dbus_connection_call_sync(
        bus, "org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus", method,
        arguments, G_VARIANT_TYPE(replyType), G_DBUS_CALL_FLAGS_NONE, -1, deadline.cancellable(),
        outcome));
    outcome.check();
    return reply;
}

bool isOwned(GDBusConnection *bus, const Deadline &deadline)
{
    gboolean isOwned = FALSE;
    const auto reply =
        askBus(bus, "NameHasOwner", g_variant_new("(s)", serviceName), "(b)", deadline);
    g_variant_get(reply.get(), "(b)", &isOwned);
    return isOwned;
}

bool isActivatable(GDBusConnection *bus, const Deadline &deadline)
{
    const auto reply = askBus(bus, "ListActivatableNames", nullptr, "(as)", deadline);
    const Owned<GVariant> names(g_variant_get_child_value(reply.get(), 0));
    const std::unique_ptr<const gchar *, decltype(&g_free)> list(
        g_variant_get_strv(names.get(), nullptr), &g_free);
    return g_strv_contains(list.get(), serviceName);
}

} // namespace

bool SecretServiceItems::isReachable(const std::stop_token &stop)
{
    const Deadline deadline(stop);
    const auto bus = openBus(deadline);
    return bus && (isOwned(bus.get(), deadline) || isActivatable(bus.get(), deadline));
}

bool SecretServiceItems::hasDefaultKeyring(const std::stop_token &stop)
{
    const Deadline deadline(stop);
    const auto service = openService(deadline);
    return defaultCollection(service.get(), deadline) != nullptr;
}

std::optional<QByteArray> SecretServiceItems::find(const Item &item) const
{
    const Deadline deadline(m_stop);
    const auto service = openService(deadline);
    const auto found = search(service.get(), item, deadline);
    if (!found) {
        openDefaultCollection(service.get(), deadline);
        return std::nullopt;
    }
    if (secret_item_get_locked(found.get()))
        throw lockedRefusal();
    Outcome outcome;
    secret_item_load_secret_sync(found.get(), deadline.cancellable(), outcome);
    outcome.check();
    const Owned<SecretValue> value(secret_item_get_secret(found.get()));
    if (!value)
        throw lockedRefusal();
    gsize length = 0;
    const gchar *bytes = secret_value_get(value.get(), &length);
    return QByteArray(bytes, static_cast<qsizetype>(length));
}

bool SecretServiceItems::add(const Item &item, const QByteArray &secret)
{
    const Deadline deadline(m_stop);
    const auto service = openService(deadline);
    if (search(service.get(), item, deadline))
        return false;
    const auto collection = openDefaultCollection(service.get(), deadline);
    if (!collection)
        throw Refusal(notAvailable,
                      QStringLiteral("Não há um %1 padrão no sistema. Crie um.").arg(keyring()));
    createItem(service.get(), collection.get(), item, secret, deadline);
    return true;
}

void SecretServiceItems::remove(const Item &item)
{
    const Deadline deadline(m_stop);
    const auto service = openService(deadline);
    const auto found = search(service.get(), item, deadline);
    if (!found) {
        openDefaultCollection(service.get(), deadline);
        return;
    }
    Outcome outcome;
    const Owned<GVariant> reply(g_dbus_connection_call_sync(
        g_dbus_proxy_get_connection(G_DBUS_PROXY(service.get())), serviceName,
        g_dbus_proxy_get_object_path(G_DBUS_PROXY(found.get())), "org.freedesktop.Secret.Item",
        "Delete", nullptr, G_VARIANT_TYPE("(o)"), G_DBUS_CALL_FLAGS_NONE, -1,
        deadline.cancellable(), outcome));
    outcome.check();
    const char *prompt = nullptr;
    g_variant_get(reply.get(), "(&o)", &prompt);
    if (qstrcmp(prompt, "/") != 0) // as for a new item
        throw lockedRefusal();
}

void SecretServiceItems::rename(const Item &item)
{
    try {
        const Deadline deadline(m_stop);
        const auto service = openService(deadline);
        const auto found = search(service.get(), item, deadline);
        if (!found)
            return;
        const std::unique_ptr<gchar, decltype(&g_free)> label(secret_item_get_label(found.get()),
                                                              &g_free);
        Outcome ignored;
        if (item.label != QString::fromUtf8(label.get()))
            secret_item_set_label_sync(found.get(), qUtf8Printable(item.label),
                                       deadline.cancellable(), ignored);
    } catch (const Refusal &) {
        // The key is at hand already; an older label does no harm.
    }
}

} // namespace velmo
