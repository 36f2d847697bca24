#include "VelmoSystem/Device/ConnectivityService.h"

#include "tests/support/FakeDevices.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

namespace velmo {

TEST(ConnectivityService, PutsWiFiFirstAndTellsBluetoothOnceAsked)
{
    using Link = ConnectivityService::Link;
    FakeNetwork network;
    FakeBluetooth bluetooth;
    ConnectivityService service(network, bluetooth);
    service.start();
    EXPECT_EQ(service.link(), std::nullopt);
    const std::tuple<bool, bool, bool, Link> paths[] = {
        {false, true, true, Link::offline}, {true, true, false, Link::wifi},
        {true, true, true, Link::wifi},     {true, false, true, Link::ethernet},
        {true, false, false, Link::other},
    };
    for (const auto &[isSatisfied, usesWiFi, usesEthernet, link] : paths) {
        network.set(NetworkMonitor::Path{isSatisfied, usesWiFi, usesEthernet, {}});
        EXPECT_EQ(service.link(), link);
    }
    bluetooth.set(true);
    EXPECT_EQ(service.bluetoothState(), std::nullopt);
    service.checkBluetooth();
    EXPECT_EQ(service.bluetoothState(), "Ligado");
    bluetooth.set(false);
    EXPECT_EQ(service.bluetoothState(), "Desligado");
    bluetooth.set({}, "Nenhum adaptador Bluetooth.");
    EXPECT_EQ(service.bluetoothState(), "Nenhum adaptador Bluetooth.");
}

} // namespace velmo
