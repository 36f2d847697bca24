#include "VelmoSystem/Linux/DBus/DBusNotifications.h"

#include <QDBusMessage>
#include <QDBusPendingCallWatcher>

#include <algorithm>

namespace velmo {

namespace {

constexpr QLatin1StringView service("org.freedesktop.Notifications");
constexpr QLatin1StringView path("/org/freedesktop/Notifications");
constexpr QLatin1StringView application("app.orvane.Orvane");
constexpr QLatin1StringView defaultAction("default");

} // namespace

DBusNotifications::DBusNotifications(QDBusConnection sessionBus)
    : m_bus(std::move(sessionBus)),
      m_watcher(service, m_bus, QDBusServiceWatcher::WatchForUnregistration)
{
    connect(&m_watcher, &QDBusServiceWatcher::serviceUnregistered, this,
            &DBusNotifications::forgetAll);
    m_bus.connect(service, path, service, QStringLiteral("NotificationClosed"), this,
                  SLOT(notificationClosed(uint, uint)));
    m_bus.connect(service, path, service, QStringLiteral("ActionInvoked"), this,
                  SLOT(actionInvoked(uint, QString)));
}

void DBusNotifications::show(const QString &identifier, const Notification &notification)
{
    Shown &shown = m_shown[identifier];
    shown.next = notification;
    shown.isWithdrawn = false;
    if (!m_takesMarkup)
        askForCapabilities();
    else if (!shown.isAsking)
        notify(identifier);
}

void DBusNotifications::withdraw(const QString &identifier)
{
    const auto shown = m_shown.find(identifier);
    if (shown == m_shown.end())
        return;
    shown->second.next.reset();
    if (shown->second.isAsking) {
        shown->second.isWithdrawn = true;
        return;
    }
    if (shown->second.id != 0)
        call(QStringLiteral("CloseNotification"), {shown->second.id}, [](const auto &) {});
    m_shown.erase(shown);
}

void DBusNotifications::notificationClosed(uint id, uint)
{
    const auto identifier = identifierOf(id);
    if (!identifier)
        return;
    m_shown.erase(*identifier);
    Q_EMIT closed(*identifier);
}

void DBusNotifications::actionInvoked(uint id, const QString &action)
{
    const auto identifier = identifierOf(id);
    if (identifier && action == defaultAction)
        Q_EMIT activated(*identifier);
}

void DBusNotifications::call(const QString &method, const QVariantList &arguments,
                             std::function<void(const QDBusMessage &)> answered)
{
    auto message = QDBusMessage::createMethodCall(service, path, service, method);
    message.setArguments(arguments);
    auto *const watcher = new QDBusPendingCallWatcher(m_bus.asyncCall(message), this);
    connect(watcher, &QDBusPendingCallWatcher::finished, this,
            [watcher, answered = std::move(answered)] {
                watcher->deleteLater();
                answered(watcher->reply());
            });
}

void DBusNotifications::askForCapabilities()
{
    if (std::exchange(m_isAskingForCapabilities, true))
        return;
    call(QStringLiteral("GetCapabilities"), {}, [this](const QDBusMessage &answer) {
        m_isAskingForCapabilities = false;
        m_takesMarkup =
            answer.arguments().value(0).toStringList().contains(QStringLiteral("body-markup"));
        std::vector<QString> waiting;
        for (const auto &[identifier, shown] : m_shown) {
            if (shown.next)
                waiting.push_back(identifier);
        }
        for (const QString &identifier : waiting)
            notify(identifier);
    });
}

void DBusNotifications::notify(const QString &identifier)
{
    Shown &shown = m_shown.at(identifier);
    const Notification notification = *std::exchange(shown.next, std::nullopt);
    shown.isAsking = true;
    constexpr int serversChoice = -1;
    call(QStringLiteral("Notify"),
         {QStringLiteral("Orvane"), shown.id, QString(application), notification.title,
          *m_takesMarkup ? notification.body.toHtmlEscaped() : notification.body,
          QStringList{defaultAction, QStringLiteral("Abrir")},
          QVariantMap{{QStringLiteral("desktop-entry"), QString(application)}}, serversChoice},
         [this, identifier](const QDBusMessage &answer) { answered(identifier, answer); });
}

void DBusNotifications::answered(const QString &identifier, const QDBusMessage &answer)
{
    const auto found = m_shown.find(identifier);
    if (found == m_shown.end())
        return; // the server went meanwhile
    Shown &shown = found->second;
    shown.isAsking = false;
    shown.id = answer.arguments().value(0).toUInt();
    if (answer.type() == QDBusMessage::ErrorMessage || shown.id == 0) {
        m_shown.erase(found);
        Q_EMIT failed(answer.errorMessage());
        Q_EMIT closed(identifier);
    } else if (shown.isWithdrawn) {
        withdraw(identifier);
    } else if (shown.next) {
        notify(identifier);
    }
}

void DBusNotifications::forgetAll()
{
    m_takesMarkup.reset();
    for (const auto &[identifier, shown] : std::exchange(m_shown, {}))
        Q_EMIT closed(identifier);
}

std::optional<QString> DBusNotifications::identifierOf(uint id) const
{
    const auto found = std::ranges::find_if(
        m_shown, [&](const auto &entry) { return id != 0 && entry.second.id == id; });
    return found == m_shown.end() ? std::nullopt : std::optional(found->first);
}

} // namespace velmo
