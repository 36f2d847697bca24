#include "VelmoSystem/Notifications/SystemNotifier.h"

#include "VelmoCore/Foundation/Log.h"

namespace velmo {

SystemNotifier::SystemNotifier(NotificationServer &server, Scheduler &scheduler)
    : m_server(server), m_scheduler(scheduler)
{
    connect(&server, &NotificationServer::activated, this, [this](const QString &identifier) {
        if (const auto module = m_modules.find(identifier); module != m_modules.end())
            onActivated(QString(module->second));
    });
    connect(&server, &NotificationServer::closed, this,
            [this](const QString &identifier) { m_modules.erase(identifier); });
    connect(&server, &NotificationServer::failed, this, [](const QString &reason) {
        qCWarning(Log::app).noquote() << "Notificação não exibida:" << reason;
    });
}

void SystemNotifier::send(const QString &identifier, const Notification &notification,
                          const QString &moduleID)
{
    m_pending.erase(identifier);
    m_modules[identifier] = moduleID;
    m_server.show(identifier, notification);
}

void SystemNotifier::schedule(const QString &identifier, const Notification &notification,
                              Date date, const QString &moduleID)
{
    m_pending[identifier] = {notification, date, moduleID, {}};
    fireWhenDue(identifier);
}

void SystemNotifier::cancel(const QString &identifier)
{
    m_pending.erase(identifier);
    m_modules.erase(identifier);
    m_server.withdraw(identifier);
}

void SystemNotifier::fireWhenDue(const QString &identifier)
{
    Pending &pending = m_pending.at(identifier);
    const Seconds left = pending.date - m_scheduler.now();
    if (left <= 0s) {
        const Notification notification = pending.notification;
        send(identifier, notification, QString(pending.moduleID));
        return;
    }
    // Looks again then: the clock may have been set back.
    pending.task =
        m_scheduler.after(left, [this, identifier] { fireWhenDue(QString(identifier)); });
}

} // namespace velmo
