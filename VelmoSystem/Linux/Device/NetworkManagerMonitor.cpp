#include "VelmoSystem/Linux/Device/NetworkManagerMonitor.h"

namespace velmo {

NetworkManagerMonitor::NetworkManagerMonitor(QDBusConnection systemBus)
    : m_bus(std::move(systemBus))
{
}

void NetworkManagerMonitor::start()
{
}

} // namespace velmo
