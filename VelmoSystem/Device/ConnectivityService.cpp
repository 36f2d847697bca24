#include "VelmoSystem/Device/ConnectivityService.h"

namespace velmo {

ConnectivityService::ConnectivityService(NetworkMonitor &network, BluetoothAdapter &bluetooth)
    : m_network(network), m_bluetooth(bluetooth)
{
}

void ConnectivityService::start()
{
    m_network.start();
}

} // namespace velmo
