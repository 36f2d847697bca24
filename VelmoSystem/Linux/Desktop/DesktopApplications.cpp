#include "VelmoSystem/Linux/Desktop/DesktopApplications.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoSystem/Linux/Desktop/ApplicationIdentifiers.h"

#include <QAbstractEventDispatcher>
#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <atomic>
#include <gio/gdesktopappinfo.h>
#include <thread>
#include <unistd.h>

namespace velmo {

namespace {

struct Release {
    void operator()(gpointer object) const { g_object_unref(object); }
    void operator()(gchar *text) const { g_free(text); }
    void operator()(GError *error) const { g_error_free(error); }
};
template <class Object>
using Owned = std::unique_ptr<Object, Release>;
using Entry = Owned<GDesktopAppInfo>;

/// Nothing for an entry that is missing, hidden, broken or without its program.
Entry entryOf(const QString &id)
{
    return Entry(g_desktop_app_info_new(qUtf8Printable(id)));
}

QString searchText(GDesktopAppInfo *entry)
{
    QStringList words{QString::fromUtf8(g_desktop_app_info_get_generic_name(entry))};
    if (const auto *keywords = g_desktop_app_info_get_keywords(entry)) {
        for (; *keywords; ++keywords)
            words += QString::fromUtf8(*keywords);
    }
    const auto program = QString::fromUtf8(g_app_info_get_executable(G_APP_INFO(entry)));
    words += QFileInfo(program).fileName();
    words.removeAll(QString());
    return words.join(QLatin1Char(' '));
}

Applications::Application application(GDesktopAppInfo *entry)
{
    const Owned<gchar> icon(g_desktop_app_info_get_string(entry, G_KEY_FILE_DESKTOP_KEY_ICON));
    const auto id = QString::fromUtf8(g_app_info_get_id(G_APP_INFO(entry)));
    const QString name = ApplicationIdentifiers::withoutSuffix(id);
    const QString known = ApplicationIdentifiers::known(name);
    return {.id = id,
            .name = QString::fromUtf8(g_app_info_get_name(G_APP_INFO(entry))),
            .icon = QString::fromUtf8(icon.get()),
            .keywords = searchText(entry),
            .bundleID = known.isEmpty() ? name : known,
            .windowClass = QString::fromUtf8(g_desktop_app_info_get_startup_wm_class(entry))};
}

std::vector<Applications::Application> shownInMenus()
{
    std::vector<Applications::Application> shown;
    GList *entries = g_app_info_get_all(); // each id once
    for (const GList *link = entries; link; link = link->next) {
        if (g_app_info_should_show(G_APP_INFO(link->data)))
            shown.push_back(application(G_DESKTOP_APP_INFO(link->data)));
    }
    g_list_free_full(entries, g_object_unref);
    std::ranges::sort(shown, [](const auto &a, const auto &b) {
        const int order = a.name.localeAwareCompare(b.name);
        return order == 0 ? a.id < b.id : order < 0;
    });
    return shown;
}

/// The id is the path below a folder of entries, with hyphens for slashes: the entry is looked for
/// under each ending of the path.
std::optional<QString> idByPath(const QString &path, const QString &canonicalPath)
{
    QStringList names = path.split(QLatin1Char('/'), Qt::SkipEmptyParts);
    QString id;
    while (!names.isEmpty()) {
        id.prepend(names.takeLast());
        const Entry entry = entryOf(id);
        if (entry && QFileInfo(QFile::decodeName(g_desktop_app_info_get_filename(entry.get())))
                             .canonicalFilePath() == canonicalPath)
            return id;
        id.prepend(QLatin1Char('-'));
    }
    return std::nullopt;
}

/// Without GLib's main loop nothing says when a list has become old.
bool hearsOfChanges()
{
    const auto *dispatcher = QAbstractEventDispatcher::instance();
    return dispatcher && dispatcher->inherits("QEventDispatcherGlib");
}

/// In the new process. `folder` is a path, or nothing for an entry that names its own.
extern "C" void leaveOrvane(gpointer folder)
{
    ::setsid();
    // A home that is missing is no reason not to start.
    [[maybe_unused]] const bool isThere = folder && ::chdir(static_cast<const char *>(folder)) == 0;
}

} // namespace

class DesktopApplications::Monitor {
public:
    explicit Monitor(DesktopApplications &owner)
        : m_monitor(g_app_info_monitor_get()),
          m_handler(g_signal_connect(m_monitor.get(), "changed", G_CALLBACK(&notify), &owner))
    {
    }
    ~Monitor() { g_signal_handler_disconnect(m_monitor.get(), m_handler); }
    Q_DISABLE_COPY_MOVE(Monitor)

private:
    static void notify(GAppInfoMonitor *, DesktopApplications *owner)
    {
        owner->m_installed.reset();
        Q_EMIT owner->changed();
    }

    Owned<GAppInfoMonitor> m_monitor;
    gulong m_handler;
};

/// The connection that GIO launches by: without it, a launch would first connect and wait for as
/// long as the bus keeps silent.
struct DesktopApplications::SessionBus {
    static void connect(const std::shared_ptr<SessionBus> &state)
    {
        state->connection.reset(g_bus_get_sync(G_BUS_TYPE_SESSION, nullptr, nullptr));
        if (state->connection) // its end isn't Orvane's
            g_dbus_connection_set_exit_on_close(state->connection.get(), FALSE);
        state->hasAnswered = true;
    }

    Owned<GDBusConnection> connection; ///< none without a bus
    std::atomic<bool> hasAnswered = false;
};

DesktopApplications::DesktopApplications()
    : m_monitor(std::make_unique<Monitor>(*this)), m_bus(std::make_shared<SessionBus>())
{
    std::thread(&SessionBus::connect, m_bus).detach();
}

DesktopApplications::~DesktopApplications() = default;

std::vector<Applications::Application> DesktopApplications::installed() const
{
    if (!hearsOfChanges())
        return shownInMenus();
    if (!m_installed)
        m_installed = shownInMenus();
    return *m_installed;
}

std::optional<Applications::Application> DesktopApplications::find(const QString &id) const
{
    const Entry entry = entryOf(id);
    return entry ? std::optional(application(entry.get())) : std::nullopt;
}

std::optional<QString> DesktopApplications::idOf(const QUrl &file) const
{
    const QFileInfo entry(file.toLocalFile());
    const QString path = entry.canonicalFilePath();
    if (path.isEmpty())
        return std::nullopt;
    const auto id = idByPath(path, path); // a link may have another name
    return id ? id : idByPath(entry.absoluteFilePath(), path);
}

std::optional<QString> DesktopApplications::handlerOf(const QString &mediaType) const
{
    const Owned<GAppInfo> handler(
        g_app_info_get_default_for_type(mediaType.toUtf8().constData(), FALSE));
    const char *id = handler ? g_app_info_get_id(handler.get()) : nullptr;
    return id ? std::optional(QString::fromUtf8(id)) : std::nullopt;
}

void DesktopApplications::launch(const QString &id)
{
    const Entry entry = entryOf(id);
    if (!entry)
        throw LocalizedError(QStringLiteral("O aplicativo não está mais instalado."));
    if (!m_bus->hasAnswered)
        throw LocalizedError(QStringLiteral("“%1” não pôde ser aberto: a sessão não responde.")
                                 .arg(application(entry.get()).name));
    const Owned<GAppLaunchContext> context(g_app_launch_context_new());
    const Owned<gchar> ownFolder(
        g_desktop_app_info_get_string(entry.get(), G_KEY_FILE_DESKTOP_KEY_PATH));
    const bool hasOwnFolder = ownFolder && *ownFolder;
    QByteArray home = QFile::encodeName(QDir::homePath());
    GError *failure = nullptr;
    g_desktop_app_info_launch_uris_as_manager(
        entry.get(), nullptr, context.get(), G_SPAWN_SEARCH_PATH, &leaveOrvane,
        hasOwnFolder ? nullptr : home.data(), nullptr, nullptr, &failure);
    const Owned<GError> error(failure);
    if (error)
        throw LocalizedError(
            QStringLiteral("“%1” não pôde ser aberto: %2")
                .arg(application(entry.get()).name, QString::fromUtf8(error->message)));
}

} // namespace velmo
