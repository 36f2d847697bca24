#include "VelmoSystem/Linux/Desktop/DesktopPermissions.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/PlatformNames.h"
#include "VelmoSystem/Ports/BluetoothAdapter.h"

#include <QDBusError>
#include <QDBusMessage>
#include <QDBusPendingCallWatcher>
#include <QDir>
#include <QProcess>
#include <QStandardPaths>

#include <algorithm>
#include <array>
#include <filesystem>

namespace velmo {
namespace {

constexpr int timeout = 2000; // milliseconds

using Programs = std::array<const char *, 4>;

constexpr Programs gnomeSettings{"gnome-control-center"};
constexpr Programs plasmaSettings{"systemsettings", "systemsettings5", "kcmshell6", "kcmshell5"};
constexpr Programs cinnamonSettings{"cinnamon-settings"};

/// One of the programs, the first that is installed, with the argument shows the page of a kind.
struct Page {
    const char *desktop; ///< in `XDG_CURRENT_DESKTOP`; nothing for any
    PermissionKind kind;
    Programs programs;
    const char *argument = nullptr;
};

constexpr auto pages = [] {
    using enum PermissionKind;
    return std::array{
        Page{"GNOME", notifications, gnomeSettings, "notifications"},
        Page{"GNOME", camera, gnomeSettings, "camera"},
        Page{"GNOME", microphone, gnomeSettings, "microphone"},
        Page{"GNOME", accessibility, gnomeSettings, "universal-access"},
        Page{"GNOME", bluetooth, gnomeSettings, "bluetooth"},
        Page{"GNOME", calendar, gnomeSettings, "online-accounts"},
        Page{"KDE", notifications, plasmaSettings, "kcm_notifications"},
        Page{"KDE", microphone, plasmaSettings, "kcm_pulseaudio"},
        Page{"KDE", accessibility, plasmaSettings, "kcm_access"},
        Page{"KDE", bluetooth, plasmaSettings, "kcm_bluetooth"},
        Page{"XFCE", notifications, {"xfce4-notifyd-config", "xfce4-settings-manager"}},
        Page{"XFCE", accessibility, {"xfce4-accessibility-settings", "xfce4-settings-manager"}},
        Page{"X-Cinnamon", notifications, cinnamonSettings, "notifications"},
        Page{"X-Cinnamon", microphone, cinnamonSettings, "sound"},
        Page{"X-Cinnamon", accessibility, cinnamonSettings, "accessibility"},
        Page{"MATE", notifications, {"mate-notification-properties"}},
        Page{"MATE", microphone, {"mate-volume-control"}},
        Page{"MATE", accessibility, {"mate-at-properties"}},
        Page{"LXQt", notifications, {"lxqt-config-notificationd"}},
        Page{nullptr, calendar, {"gnome-online-accounts-gtk", "evolution"}},
        Page{nullptr, microphone, {"pavucontrol", "pavucontrol-qt"}, "--tab=4"},
        Page{nullptr, bluetooth, {"blueman-manager", "blueberry"}},
    };
}();

bool show(const Page &page)
{
    const auto arguments = page.argument ? QStringList(page.argument) : QStringList();
    return std::ranges::any_of(page.programs, [&](const char *name) {
        const QString program =
            name ? QStandardPaths::findExecutable(QLatin1StringView(name)) : QString();
        return !program.isEmpty() && QProcess::startDetached(program, arguments, QDir::homePath());
    });
}

PermissionStatus grantedIf(bool isThere)
{
    if (isThere)
        return {PermissionStatus::Granted()};
    return {PermissionStatus::NotGranted()};
}

bool hasCamera()
{
    const auto devices =
        QDir(QStringLiteral("/dev")).entryInfoList({QStringLiteral("video*")}, QDir::System);
    return std::ranges::any_of(devices, &QFileInfo::isReadable);
}

bool hasSoundServer()
{
    const std::filesystem::path runtime = qgetenv("XDG_RUNTIME_DIR").toStdString();
    std::error_code absent;
    return runtime.is_absolute() &&
           (std::filesystem::is_socket(runtime / "pipewire-0", absent) ||
            std::filesystem::is_socket(runtime / "pulse" / "native", absent));
}

/// On Wayland X11 shows an application only the windows of others that are on X11 too.
bool seesTheScreen()
{
    return qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
}

PermissionStatus statusOf(const BluetoothAdapter &bluetooth)
{
    if (bluetooth.isPoweredOn())
        return {PermissionStatus::Granted()};
    if (!bluetooth.issue().isEmpty())
        return {PermissionStatus::Partial{bluetooth.issue()}};
    return {PermissionStatus::NotDetermined()};
}

} // namespace

DesktopPermissions::DesktopPermissions(QDBusConnection sessionBus, BluetoothAdapter &bluetooth)
    : m_bus(std::move(sessionBus)), m_bluetooth(bluetooth)
{
}

void DesktopPermissions::read(PermissionKind kind, Answer answer)
{
    switch (kind) {
    case PermissionKind::notifications:
        if (hasBundle())
            findService(QStringLiteral("org.freedesktop.Notifications"), answer);
        else
            answer({PermissionStatus::Partial{
                QStringLiteral("Disponível apenas em uma sessão com D-Bus.")}});
        return;
    case PermissionKind::calendar:
        return answer({PermissionStatus::Granted()}); // feeds are read by Orvane itself
    case PermissionKind::reminders:
        return answer({PermissionStatus::NotGranted()}); // no desktop has such a service
    case PermissionKind::camera:
        return answer(grantedIf(hasCamera()));
    case PermissionKind::microphone:
        return answer(grantedIf(hasSoundServer()));
    case PermissionKind::screenRecording:
        return answer(grantedIf(seesTheScreen()));
    case PermissionKind::accessibility:
        return findService(QStringLiteral("org.a11y.Bus"), answer);
    case PermissionKind::automation:
        return answer({PermissionStatus::PerApp()});
    case PermissionKind::bluetooth:
        return answer(statusOf(m_bluetooth));
    }
}

void DesktopPermissions::request(PermissionKind kind, Answer answer)
{
    if (kind != PermissionKind::bluetooth)
        return read(kind, std::move(answer));
    m_bluetooth.start();
    const auto status = statusOf(m_bluetooth);
    if (status != PermissionStatus())
        return answer(status);
    QObject::connect(
        &m_bluetooth, &BluetoothAdapter::changed, &m_context,
        [this, answer = std::move(answer)] { answer(statusOf(m_bluetooth)); },
        Qt::SingleShotConnection);
}

void DesktopPermissions::openSettings(PermissionKind kind)
{
    const auto desktops = qEnvironmentVariable("XDG_CURRENT_DESKTOP").split(u':');
    for (const Page &page : pages) {
        const bool isHere = !page.desktop ||
                            desktops.contains(QLatin1StringView(page.desktop), Qt::CaseInsensitive);
        if (page.kind == kind && isHere && show(page))
            return;
    }
    throw LocalizedError(
        QStringLiteral("Este ambiente não tem uma página para %1 em %2.")
            .arg(Permissions::texts(kind).title, QStringView(PlatformNames::systemSettings)));
}

void DesktopPermissions::findService(const QString &name, const Answer &answer)
{
    askBus(QStringLiteral("NameHasOwner"), {name}, [this, name, answer](const QVariant &isOwned) {
        if (!isOwned.isValid() || isOwned.toBool())
            return answer(grantedIf(isOwned.toBool()));
        askBus(QStringLiteral("ListActivatableNames"), {}, [name, answer](const QVariant &names) {
            answer(grantedIf(names.toStringList().contains(name)));
        });
    });
}

void DesktopPermissions::askBus(const QString &method, const QVariantList &arguments,
                                std::function<void(const QVariant &)> answered)
{
    if (!m_bus.isConnected())
        return answered({}); // Qt's own answer would never come
    auto message = QDBusMessage::createMethodCall(QStringLiteral("org.freedesktop.DBus"),
                                                  QStringLiteral("/org/freedesktop/DBus"),
                                                  QStringLiteral("org.freedesktop.DBus"), method);
    message.setArguments(arguments);
    auto *const watcher =
        new QDBusPendingCallWatcher(m_bus.asyncCall(message, timeout), &m_context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, &m_context,
                     [watcher, answered = std::move(answered)] {
                         watcher->deleteLater();
                         if (!watcher->isError())
                             return answered(watcher->reply().arguments().value(0));
                         qCWarning(Log::permissions, "O barramento não responde: %ls",
                                   qUtf16Printable(watcher->error().message()));
                         answered({}); // the reply's argument is the error's text
                     });
}

} // namespace velmo
