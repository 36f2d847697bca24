#include "VelmoSystem/Linux/Device/BlueZAdapter.h"
#include "VelmoSystem/Linux/Device/NetworkManagerMonitor.h"
#include "VelmoSystem/Linux/Device/UPowerDevices.h"

#include "tests/support/DBusMock.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace velmo {

namespace {

/// Compares once an adapter has had the time to know.
template <class Read>
void expectSoon(Read read, const QString &expected)
{
    DBusMock::waitFor([&] { return read() == expected; });
    EXPECT_EQ(read(), expected);
}

/// One of dbusmock's templates, and what the tests do with it.
struct Kind {
    const char *service, *name, *path, *prelude;
};

struct Service : DBusMock {
    Service(const PrivateBus &bus, const Kind &ofKind)
        : DBusMock(bus, ofKind.service, {"--template", ofKind.name}), kind(ofKind)
    {
    }
    void run(const QString &code) { DBusMock::run(kind.path, kind.prelude + code); }

    const Kind &kind;
};

/// Runs a script in the service; after "=>" stands what the adapter then says.
template <class Read>
void follow(Service &service, Read state, const QString &script)
{
    QString code;
    for (const QString &line : script.split('\n')) {
        if (!line.startsWith("=>")) {
            code += line + '\n';
            continue;
        }
        service.run(std::exchange(code, {}));
        expectSoon(state, line.mid(3));
    }
}

constexpr Kind upowerKind{"org.freedesktop.UPower", "upower", "/org/freedesktop/UPower", R"(
root, device = '/org/freedesktop/UPower/devices/', 'org.freedesktop.UPower.Device'
def add(name, **properties):
    self.AddObject(root + name, device, properties, [])
    self.EmitSignal('', 'DeviceAdded', 'o', [root + name])
def change(name, **properties):
    for key, value in properties.items(): objects[root + name].Set(device, key, value)
def remove(name):
    self.RemoveObject(root + name)
    self.EmitSignal('', 'DeviceRemoved', 'o', [root + name])
)"};

constexpr Kind managerKind{"org.freedesktop.NetworkManager", "networkmanager",
                           "/org/freedesktop/NetworkManager", R"(
root, active = '/org/freedesktop/NetworkManager/', 'org.freedesktop.NetworkManager.Connection.Active'
def add(name, type, state):
    self.AddObject(root + name, active, {'Type': type, 'Id': name, 'State': dbus.UInt32(state)}, [])
def change(**properties):
    for key, value in properties.items(): self.Set(self.interface, key, value)
def connect(state, *names):
    paths = dbus.Array([dbus.ObjectPath(root + name) for name in names], signature='o')
    change(State=dbus.UInt32(state), ActiveConnections=paths, PrimaryConnection=(paths + [''])[0])
)"};

constexpr Kind bluezKind{"org.bluez", "bluez5", "/", R"(
def add(name): objects['/org/bluez'].AddAdapter(name, 'PC')
def power(name, value): objects['/org/bluez/' + name].Set('org.bluez.Adapter1', 'Powered', value)
)"};

} // namespace

TEST(UPowerBattery, MissesNothingOnAMachineWithoutABattery)
{
    const PrivateBus bus; // without UPower
    UPowerDevices devices(bus.connect());
    const TemporaryFolder supplies;
    const UPowerBattery battery(devices, supplies.path());
    supplies.write("AC/type", "Mains\n");
    supplies.write("mouse/type", "Battery\n");
    supplies.write("mouse/scope", "Device\n");
    expectSoon([&] { return devices.issue(); }, "O UPower não está disponível.");
    EXPECT_EQ(battery.issue(), "");
    supplies.write("BAT0/type", "Battery\n");
    EXPECT_EQ(battery.issue(), devices.issue());
}

TEST(UPowerDevices, FollowsBatteriesAndAccessories)
{
    const PrivateBus bus;
    Service upower(bus, upowerKind);
    UPowerDevices devices(bus.connect());
    const auto state = [&] {
        QStringList texts;
        if (const auto battery = devices.battery())
            texts += QString("%1 %2 %3 %4")
                         .arg(battery->percent)
                         .arg(battery->isCharging ? "charging" : "idle")
                         .arg(battery->isOnAC ? "AC" : "own")
                         .arg(battery->minutesRemaining.value_or(-1));
        for (const AccessoryInfo &device : devices.accessories())
            texts += QString("%1 %2 %3")
                         .arg(device.name, device.symbol)
                         .arg(device.batteryPercent.value_or(-1));
        return texts.join(", ");
    };
    EXPECT_EQ(state(), "") << "before UPower has answered";
    EXPECT_EQ(devices.issue(), "");
    follow(upower, state, R"(
add('ac', Type=dbus.UInt32(1), PowerSupply=True, Online=True)
add('BAT0', Type=dbus.UInt32(2), PowerSupply=True, Percentage=41.6, State=dbus.UInt32(2),
    TimeToEmpty=dbus.Int64(7260), Energy=10.0, EnergyFull=50.0)
=> 42 idle AC -1
self.Set(self.interface, 'OnBattery', True)
change('BAT0', Percentage=7.0, TimeToEmpty=dbus.Int64(0))
=> 7 idle own -1
add('BAT1', Type=dbus.UInt32(2), PowerSupply=True, Percentage=90.0, State=dbus.UInt32(1),
    TimeToFull=dbus.Int64(60), Energy=90.0, EnergyFull=100.0, EnergyRate=50.0, IsPresent=True)
=> 67 charging own 60
remove('BAT0')
=> 90 charging own 1
change('BAT1', Percentage='meia', State='?')
add('off', Type=dbus.UInt32(6), Model='Longe', IsPresent=False)
add('odd', Type='rato', Percentage=5.0)
add('mouse', Type=dbus.UInt32(5), Model='MX', Percentage=55.0)
=> MX computermouse 55
remove('mouse')
add('new', Type=dbus.UInt32(99), Model='Novo', Percentage='muito')
add('pad', Type=dbus.UInt32(12), Model=' ', Percentage=0.0, State=dbus.UInt32(0))
=> Novo battery.100 -1, Controle de jogo gamecontroller -1
remove('new')
change('pad', Percentage=3.0)
=> Controle de jogo gamecontroller 3
)");
}

TEST(NetworkManagerMonitor, FollowsConnectionsAndWiFi)
{
    const PrivateBus bus;
    Service manager(bus, managerKind);
    NetworkManagerMonitor monitor(bus.connect());
    const auto state = [&] {
        const auto path = monitor.path();
        const auto power = monitor.isWiFiPoweredOn();
        return (path
                    ? QString(path->isSatisfied ? "up" : "down") + (path->usesWiFi ? " wifi" : "") +
                          (path->usesWiredEthernet ? " ethernet " : " ") + path->name
                    : monitor.issue()) +
               (power ? *power ? " on" : " off" : "");
    };
    monitor.start();
    EXPECT_EQ(state(), "") << "before NetworkManager has answered";
    follow(manager, state, R"(
=> up  on
self.AddProperties('', {'RadioFlags': dbus.UInt32(1), 'PrimaryConnection': ''})
change(RadioFlags=dbus.UInt32(0))
add('Cabo', '802-3-ethernet', 2)
add('Casa', '802-11-wireless', 1)
add('Torta', 7, 2)
connect(70, 'Cabo', 'Casa', 'Torta')
=> up ethernet Cabo
objects[root + 'Casa'].Set(active, 'State', dbus.UInt32(2))
change(RadioFlags=dbus.UInt32(1))
=> up wifi ethernet Cabo on
connect(60, 'Casa')
=> up wifi Casa on
connect(50)
change(WirelessEnabled=False)
=> down  off
change(ActiveConnections='nenhuma', State='boa')
=> O NetworkManager não respondeu.
)");
}

TEST(BlueZAdapter, IsOnIfAnyAdapterIs)
{
    const PrivateBus bus;
    Service bluez(bus, bluezKind);
    BlueZAdapter adapter(bus.connect());
    adapter.start();
    const auto state = [&] {
        const auto power = adapter.isPoweredOn();
        return power ? QString(*power ? "on" : "off") : adapter.issue();
    };
    EXPECT_EQ(state(), "") << "before BlueZ has answered";
    follow(bluez, state, R"(
=> Nenhum adaptador Bluetooth.
add('hci0')
=> on
power('hci0', False)
=> off
add('hci1')
=> on
power('hci1', 'sim')
=> off
self.EmitSignal('', 'InterfacesRemoved', 'oas', ['/org/bluez/hci0', ['org.bluez.Adapter1']])
=> Nenhum adaptador Bluetooth.
)");
    bluez.run("self.AddMethod('', 'GetManagedObjects', '', 's', 'ret = \"nada\"')");
    adapter.start();
    expectSoon(state, "O BlueZ não respondeu.");
}

TEST(DeviceServices, ComeGoAndStallWithoutBlockingAnybody)
{
    const PrivateBus bus;
    UPowerDevices devices(bus.connect());
    NetworkManagerMonitor network(bus.connect());
    BlueZAdapter bluetooth(bus.connect());
    network.start();
    bluetooth.start();
    const auto issues = [&] {
        return QStringList{devices.issue(), network.issue(), bluetooth.issue()}.join(' ');
    };
    const QString missing = "O UPower não está disponível. O NetworkManager não está disponível. "
                            "O BlueZ não está disponível.";
    const QString present = "  Nenhum adaptador Bluetooth.";
    expectSoon(issues, missing);
    {
        Service upower(bus, upowerKind);
        Service manager(bus, managerKind);
        Service bluez(bus, bluezKind);
        expectSoon(issues, present);
        const std::array<DBusMock *, 3> services{&upower, &manager, &bluez};
        std::ranges::for_each(services, &DBusMock::stop);
        UPowerDevices newDevices(bus.connect());
        NetworkManagerMonitor newNetwork(bus.connect());
        BlueZAdapter newBluetooth(bus.connect());
        SystemScheduler scheduler;
        const Date start = scheduler.now();
        newNetwork.start();
        newBluetooth.start();
        for (int tick = 0; tick < 400; ++tick) { // two seconds
            const ScheduledTask task = scheduler.after(5ms, [] {});
            ASSERT_TRUE(DBusMock::waitFor([&] { return !task.isPending(); }));
            ASSERT_EQ(newDevices.issue() + newNetwork.issue() + newBluetooth.issue(), "");
        }
        EXPECT_LT(scheduler.now() - start, 10s);
        std::ranges::for_each(services, &DBusMock::resume);
        expectSoon([&] { return newNetwork.path() ? "known" : ""; }, "known");
        expectSoon([&] { return newBluetooth.issue(); }, present.trimmed());
    }
    expectSoon(issues, missing);
    EXPECT_EQ(network.path(), std::nullopt);
}

} // namespace velmo
