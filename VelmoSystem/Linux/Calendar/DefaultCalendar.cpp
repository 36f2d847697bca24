#include "VelmoSystem/Linux/Calendar/DefaultCalendar.h"

#include <gio/gio.h>
#include <memory>

namespace velmo {

namespace {

struct Release {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(GSettingsSchema *schema) const { g_settings_schema_unref(schema); }
    void operator()(gchar *text) const { g_free(text); }
    void operator()(GError *error) const { g_error_free(error); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Release>;

/// Settings connect to the session bus, for changes, when they like. GIO ends the process with that
/// connection unless it is told not to: the one connection that it has is taken first and kept.
bool keepAliveWithoutBus(const std::stop_token &stop)
{
    static Owned<GDBusConnection> kept;
    if (kept)
        return true;
    const Owned<GCancellable> cancellable(g_cancellable_new());
    const std::stop_callback cancel(stop, [&] { g_cancellable_cancel(cancellable.get()); });
    GError *failure = nullptr;
    kept.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, cancellable.get(), &failure));
    const Owned<GError> error(failure);
    if (kept)
        g_dbus_connection_set_exit_on_close(kept.get(), FALSE);
    return kept != nullptr;
}

} // namespace

QString DefaultCalendar::read(const std::stop_token &stop)
{
    // Settings whose schema isn't installed end the process.
    auto *const source = g_settings_schema_source_get_default();
    const Owned<GSettingsSchema> schema(
        source ? g_settings_schema_source_lookup(source, "org.gnome.Evolution.DefaultSources", TRUE)
               : nullptr);
    constexpr const char *key = "default-calendar";
    if (!schema || !g_settings_schema_has_key(schema.get(), key) || !keepAliveWithoutBus(stop))
        return {};
    const Owned<GSettings> settings(g_settings_new_full(schema.get(), nullptr, nullptr));
    const Owned<gchar> uid(g_settings_get_string(settings.get(), key));
    return QString::fromUtf8(uid.get());
}

} // namespace velmo
