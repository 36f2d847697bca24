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
      m_watcher(service, m_bus, QDBusServiceWatcher::WatchForOwnerChange)
{
    connect(&m_watcher, &QDBusServiceWatcher::serviceOwnerChanged, this,
            [this](const QString &, const QString &server) { serverLeft(server); });
}

/// Qt asks the bus for the server's owner first and waits: not at the start.
void DBusNotifications::listen()
{
    if (std::exchange(m_isListening, true))
        return;
    m_bus.connect(service, path, service, QStringLiteral("NotificationClosed"), this,
                  SLOT(notificationClosed(uint, uint)));
    m_bus.connect(service, path, service, QStringLiteral("ActionInvoked"), this,
                  SLOT(actionInvoked(uint, QString)));
}

void DBusNotifications::show(const QString &identifier, const Notification &notification)
{
    if (!m_bus.isConnected()) { // its calls would never end
        Q_EMIT failed(QStringLiteral("não há barramento de sessão"));
        close(identifier);
        return;
    }
    listen();
    Shown &shown = m_shown[identifier];
    shown.next = notification;
    shown.isWithdrawn = false;
    if (!shown.isAsking)
        showNext(identifier);
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
    Shown &shown = m_shown.at(*identifier);
    shown.id = 0;
    if (!shown.isAsking && !shown.next) // else its replacement is on the way
        close(*identifier);
}

void DBusNotifications::actionInvoked(uint id, const QString &action)
{
    const auto identifier = identifierOf(id);
    if (identifier)
        Q_EMIT activated(*identifier, action == defaultAction ? QString() : action);
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

void DBusNotifications::showNext(const QString &identifier)
{
    if (m_takesMarkup)
        notify(identifier);
    else
        askForCapabilities();
}

void DBusNotifications::askForCapabilities()
{
    if (std::exchange(m_isAskingForCapabilities, true))
        return;
    call(QStringLiteral("GetCapabilities"), {},
         [this](const QDBusMessage &answer) { capabilitiesAnswered(answer); });
}

void DBusNotifications::capabilitiesAnswered(const QDBusMessage &answer)
{
    m_isAskingForCapabilities = false;
    if (answer.type() == QDBusMessage::ReplyMessage) {
        if (answer.service() == m_formerServer) {
            askForCapabilities();
            return;
        }
        m_takesMarkup =
            answer.arguments().value(0).toStringList().contains(QStringLiteral("body-markup"));
    }
    std::vector<QString> waiting;
    for (const auto &[identifier, shown] : m_shown) {
        if (shown.next && !shown.isAsking)
            waiting.push_back(identifier);
    }
    for (const QString &identifier : waiting)
        notify(identifier);
}

void DBusNotifications::notify(const QString &identifier)
{
    Shown &shown = m_shown.at(identifier);
    const Notification notification = *std::exchange(shown.next, std::nullopt);
    shown.isAsking = true;
    QStringList actions{defaultAction, QStringLiteral("Abrir")};
    for (const Action &action : notification.actions)
        actions << action.id << action.title;
    constexpr int serversChoice = -1;
    call(QStringLiteral("Notify"),
         {QStringLiteral("Orvane"), shown.id, QString(application), notification.title,
          m_takesMarkup.value_or(false) ? notification.body.toHtmlEscaped() : notification.body,
          actions, QVariantMap{{QStringLiteral("desktop-entry"), QString(application)}},
          serversChoice},
         [this, identifier](const QDBusMessage &answer) { answered(identifier, answer); });
}

void DBusNotifications::answered(const QString &identifier, const QDBusMessage &answer)
{
    if (answer.type() == QDBusMessage::ErrorMessage)
        Q_EMIT failed(answer.errorMessage());
    const auto found = m_shown.find(identifier);
    if (found == m_shown.end())
        return; // the bus has gone
    Shown &shown = found->second;
    shown.isAsking = false;
    const bool isShown =
        answer.type() == QDBusMessage::ReplyMessage && answer.service() != m_formerServer;
    shown.id = isShown ? answer.arguments().value(0).toUInt() : 0;
    if (shown.isWithdrawn)
        withdraw(identifier);
    else if (shown.next)
        showNext(identifier);
    else if (shown.id == 0)
        close(identifier);
}

/// What it showed is gone with it, or nobody's any more.
void DBusNotifications::serverLeft(const QString &server)
{
    if (server.isEmpty())
        return; // one came to where there was none
    m_formerServer = server;
    m_takesMarkup.reset();
    std::vector<QString> gone;
    for (auto &[identifier, shown] : m_shown) {
        shown.id = 0;
        if (!shown.isAsking && !shown.next)
            gone.push_back(identifier);
    }
    for (const QString &identifier : gone)
        close(identifier);
}

void DBusNotifications::close(const QString &identifier)
{
    const QString gone = identifier; // may be the entry's own
    m_shown.erase(gone);
    Q_EMIT closed(gone);
}

std::optional<QString> DBusNotifications::identifierOf(uint id) const
{
    const auto found = std::ranges::find_if(
        m_shown, [&](const auto &entry) { return id != 0 && entry.second.id == id; });
    return found == m_shown.end() ? std::nullopt : std::optional(found->first);
}

} // namespace velmo
