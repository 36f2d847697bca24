#include "VelmoSystem/Linux/Desktop/DesktopPermissions.h"

namespace velmo {

DesktopPermissions::DesktopPermissions(QDBusConnection sessionBus, BluetoothAdapter &bluetooth)
    : m_bus(std::move(sessionBus)), m_bluetooth(bluetooth)
{
}

void DesktopPermissions::read(PermissionKind, Answer answer)
{
    answer({});
}

void DesktopPermissions::request(PermissionKind kind, Answer answer)
{
    read(kind, std::move(answer));
}

void DesktopPermissions::openSettings(PermissionKind)
{
}

} // namespace velmo
