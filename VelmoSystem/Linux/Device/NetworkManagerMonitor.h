#pragma once

#include "VelmoSystem/Linux/DBus/RemoteObjects.h"
#include "VelmoSystem/Ports/NetworkMonitor.h"

namespace velmo {

/// `NetworkMonitor` with NetworkManager on the system bus, followed by its signals.
class NetworkManagerMonitor : public NetworkMonitor {
    Q_OBJECT

public:
    explicit NetworkManagerMonitor(QDBusConnection systemBus);

    void start() override;
    std::optional<Path> path() const override { return m_reading.path; }
    std::optional<bool> isWiFiPoweredOn() const override { return m_reading.isWiFiPoweredOn; }
    QString issue() const override { return m_reading.issue; }

private:
    struct Reading {
        std::optional<Path> path;
        std::optional<bool> isWiFiPoweredOn;
        QString issue;

        bool operator==(const Reading &) const = default;
    };

    void update();
    Reading read() const;
    Path readPath(uint state) const;

    RemoteObjects m_objects;
    Reading m_reading;
};

} // namespace velmo
