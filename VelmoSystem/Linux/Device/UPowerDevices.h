#pragma once

#include "VelmoSystem/Ports/Accessories.h"
#include "VelmoSystem/Ports/PowerInfo.h"

#include <QDBusConnection>

namespace velmo {

/// Everything with a battery that UPower knows: the machine's own and those of its accessories.
/// Nothing is asked before somebody reads; then it is followed by UPower's signals.
class UPowerDevices : public QObject {
    Q_OBJECT

public:
    explicit UPowerDevices(QDBusConnection systemBus);

    std::optional<BatteryInfo> battery();
    std::vector<AccessoryInfo> accessories();
    QString issue();

Q_SIGNALS:
    void changed();

private:
    QDBusConnection m_bus;
};

class UPowerBattery : public PowerInfo {
    Q_OBJECT

public:
    explicit UPowerBattery(UPowerDevices &devices);

    std::optional<BatteryInfo> battery() const override { return m_devices.battery(); }
    QString issue() const override { return m_devices.issue(); }

private:
    UPowerDevices &m_devices;
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
