#pragma once

#include "VelmoSystem/Ports/BluetoothAdapter.h"
#include "VelmoSystem/Ports/NetworkMonitor.h"

#include <boost/describe.hpp>

namespace velmo {

/// How the machine is connected, as the views show it.
class ConnectivityService : public QObject {
    Q_OBJECT

public:
    enum class Link { offline, wifi, ethernet, other };
    BOOST_DESCRIBE_NESTED_ENUM(Link, offline, wifi, ethernet, other)

    ConnectivityService(NetworkMonitor &network, BluetoothAdapter &bluetooth);

    /// Begins to follow the network. Bluetooth is left alone.
    void start();
    /// Asks for Bluetooth's state, and follows it from then on.
    void checkBluetooth();

    /// Nothing until the desktop has answered. A path with both Wi-Fi and Ethernet is `wifi`.
    std::optional<Link> link() const;
    /// Of the connection, empty if it has none.
    QString networkName() const;
    std::optional<bool> isWiFiPoweredOn() const { return m_network.isWiFiPoweredOn(); }
    /// "Ligado", "Desligado" or why it isn't known; nothing before `checkBluetooth`.
    const std::optional<QString> &bluetoothState() const { return m_bluetoothState; }
    /// What is missing to know the network, for the user.
    QString networkIssue() const { return m_network.issue(); }
    /// The same of Bluetooth.
    QString bluetoothIssue() const { return m_bluetooth.issue(); }

Q_SIGNALS:
    void changed();

private:
    void updateBluetooth();

    NetworkMonitor &m_network;
    BluetoothAdapter &m_bluetooth;
    bool m_isBluetoothWanted = false;
    std::optional<QString> m_bluetoothState;
};

} // namespace velmo
