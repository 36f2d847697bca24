#pragma once

#include "VelmoSystem/Linux/DBus/RemoteObjects.h"
#include "VelmoSystem/Ports/Accessories.h"
#include "VelmoSystem/Ports/PowerInfo.h"

namespace velmo {

/// Everything with a battery that UPower knows: the machine's own and those of its accessories.
/// Nothing is asked before somebody reads; then it is followed by UPower's signals.
class UPowerDevices : public QObject {
    Q_OBJECT

public:
    explicit UPowerDevices(QDBusConnection systemBus);

    std::optional<BatteryInfo> battery() { return reading().battery; }
    std::vector<AccessoryInfo> accessories() { return reading().accessories; }
    QString issue() { return reading().issue; }

Q_SIGNALS:
    void changed();

private Q_SLOTS:
    void deviceAdded(const QDBusObjectPath &path);
    void deviceRemoved(const QDBusObjectPath &path);

private:
    struct Reading {
        std::optional<BatteryInfo> battery;
        std::vector<AccessoryInfo> accessories;
        QString issue;

        bool operator==(const Reading &) const = default;
    };

    const Reading &reading();
    void ask();
    void update();
    Reading read() const;
    AccessoryInfo accessory(const QString &device, uint type) const;

    RemoteObjects m_objects;
    bool m_isStarted = false;
    bool m_isListed = false; ///< UPower has listed its devices
    Reading m_reading;
};

class UPowerBattery : public PowerInfo {
    Q_OBJECT

public:
    /// `supplies` is where the kernel lists what powers the machine.
    explicit UPowerBattery(UPowerDevices &devices,
                           QString supplies = QStringLiteral("/sys/class/power_supply"));

    std::optional<BatteryInfo> battery() const override { return m_devices.battery(); }
    QString issue() const override;

private:
    UPowerDevices &m_devices;
    QString m_supplies;
};

class UPowerAccessories : public Accessories {
    Q_OBJECT

public:
    explicit UPowerAccessories(UPowerDevices &devices);

    std::vector<AccessoryInfo> connected() const override { return m_devices.accessories(); }

private:
    UPowerDevices &m_devices;
};

} // namespace velmo
