#pragma once

#include "VelmoSystem/Ports/NetworkMonitor.h"

#include <QDBusConnection>

namespace velmo {

/// `NetworkMonitor` with NetworkManager on the system bus, followed by its signals.
class NetworkManagerMonitor : public NetworkMonitor {
    Q_OBJECT

public:
    explicit NetworkManagerMonitor(QDBusConnection systemBus);

    void start() override;
    std::optional<Path> path() const override { return m_path; }
    std::optional<bool> isWiFiPoweredOn() const override { return m_isWiFiPoweredOn; }
    QString issue() const override { return m_issue; }

private:
    QDBusConnection m_bus;
    std::optional<Path> m_path;
    std::optional<bool> m_isWiFiPoweredOn;
    QString m_issue;
};

} // namespace velmo
