#include "VelmoSystem/Notifications/SystemNotifier.h"

#include "VelmoCore/Foundation/Log.h"

namespace velmo {

SystemNotifier::SystemNotifier(NotificationServer &server, Scheduler &scheduler)
    : m_server(server), m_scheduler(scheduler)
{
    connect(&server, &NotificationServer::activated, this,
            [this](const QString &identifier, const QString &action) {
                const auto found = m_shown.find(identifier);
                if (found == m_shown.end())
                    return;
                const Shown shown = found->second; // it may go meanwhile
                if (action.isEmpty())
                    onActivated(shown.route);
                else
                    shown.act(action);
            });
    connect(&server, &NotificationServer::closed, this,
            [this](const QString &identifier) { m_shown.erase(identifier); });
    connect(&server, &NotificationServer::failed, this, [](const QString &reason) {
        qCWarning(Log::app).noquote() << "Notificação não exibida:" << reason;
    });
}

void SystemNotifier::send(const QString &identifier, const Notification &notification,
                          const Route &route, const Act &act)
{
    m_pending.erase(identifier);
    m_shown[identifier] = {route, act};
    m_server.show(identifier, notification);
}

void SystemNotifier::schedule(const QString &identifier, const Notification &notification,
                              Date date, const Route &route)
{
    if (date <= m_scheduler.now()) {
        send(identifier, notification, route);
        return;
    }
    m_pending[identifier] =
        m_scheduler.at(date, [=, this] { send(identifier, notification, route); });
}

void SystemNotifier::cancel(const QString &identifier)
{
    m_pending.erase(identifier);
    m_shown.erase(identifier);
    m_server.withdraw(identifier);
}

} // namespace velmo
