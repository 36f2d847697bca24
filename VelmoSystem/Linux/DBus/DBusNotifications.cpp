#include "VelmoSystem/Linux/DBus/DBusNotifications.h"

namespace velmo {

DBusNotifications::DBusNotifications(QDBusConnection sessionBus) : m_bus(std::move(sessionBus))
{
}

void DBusNotifications::show(const QString &, const Notification &)
{
}

void DBusNotifications::withdraw(const QString &)
{
}

} // namespace velmo
