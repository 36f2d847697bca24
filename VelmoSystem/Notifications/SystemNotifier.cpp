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
    if (date <= m_scheduler.now()) {
        send(identifier, notification, moduleID);
        return;
    }
    m_pending[identifier] =
        m_scheduler.at(date, [=, this] { send(identifier, notification, moduleID); });
}

void SystemNotifier::cancel(const QString &identifier)
{
    m_pending.erase(identifier);
    m_modules.erase(identifier);
    m_server.withdraw(identifier);
}

} // namespace velmo
