#pragma once

#include "VelmoSystem/Ports/NotificationServer.h"

#include <QDBusConnection>

namespace velmo {

/// `NotificationServer` with `org.freedesktop.Notifications`, asked without waiting.
class DBusNotifications : public NotificationServer {
    Q_OBJECT

public:
    explicit DBusNotifications(QDBusConnection sessionBus);

    void show(const QString &identifier, const Notification &notification) override;
    void withdraw(const QString &identifier) override;

private:
    QDBusConnection m_bus;
};

} // namespace velmo
