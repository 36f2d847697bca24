#include "VelmoSystem/Device/ConnectivityService.h"

namespace velmo {

ConnectivityService::ConnectivityService(NetworkMonitor &network, BluetoothAdapter &bluetooth)
    : m_network(network), m_bluetooth(bluetooth)
{
    connect(&m_network, &NetworkMonitor::changed, this, &ConnectivityService::changed);
    connect(&m_bluetooth, &BluetoothAdapter::changed, this, &ConnectivityService::updateBluetooth);
}

void ConnectivityService::start()
{
    m_network.start();
}

void ConnectivityService::checkBluetooth()
{
    m_isBluetoothWanted = true;
    m_bluetooth.start();
    updateBluetooth();
}

std::optional<ConnectivityService::Link> ConnectivityService::link() const
{
    const auto path = m_network.path();
    if (!path)
        return std::nullopt;
    if (!path->isSatisfied)
        return Link::offline;
    if (path->usesWiFi)
        return Link::wifi;
    return path->usesWiredEthernet ? Link::ethernet : Link::other;
}

QString ConnectivityService::networkName() const
{
    const auto path = m_network.path();
    return path ? path->name : QString();
}

void ConnectivityService::updateBluetooth()
{
    if (!m_isBluetoothWanted)
        return;
    std::optional<QString> state;
    if (const auto isOn = m_bluetooth.isPoweredOn())
        state = *isOn ? QStringLiteral("Ligado") : QStringLiteral("Desligado");
    else if (const QString issue = m_bluetooth.issue(); !issue.isEmpty())
        state = issue;
    if (state == m_bluetoothState)
        return;
    m_bluetoothState = state;
    Q_EMIT changed();
}

} // namespace velmo
