#include "VelmoSystem/Linux/Device/UPowerDevices.h"

namespace velmo {

UPowerDevices::UPowerDevices(QDBusConnection systemBus) : m_bus(std::move(systemBus))
{
}

std::optional<BatteryInfo> UPowerDevices::battery()
{
    return std::nullopt;
}

std::vector<AccessoryInfo> UPowerDevices::accessories()
{
    return {};
}

QString UPowerDevices::issue()
{
    return {};
}

UPowerBattery::UPowerBattery(UPowerDevices &devices) : m_devices(devices)
{
    connect(&devices, &UPowerDevices::changed, this, &PowerInfo::changed);
}

UPowerAccessories::UPowerAccessories(UPowerDevices &devices) : m_devices(devices)
{
    connect(&devices, &UPowerDevices::changed, this, &Accessories::changed);
}

} // namespace velmo
