#include "VelmoUI/Modules/System/SystemPageModel.h"

#include "VelmoSystem/Device/ConnectivityService.h"
#include "VelmoSystem/Permissions/PermissionsCenter.h"

#include "tests/VelmoUI/ServicesFixture.h"

namespace velmo {
namespace {

class SystemPageModelTest : public ServicesFixture {
protected:
    SystemPageModelTest()
    {
        services.connectivity->start();
        QObject::connect(page.tiles(), &QAbstractItemModel::dataChanged, [this] { ++changes; });
    }

    const SystemTileRow &tile(const char *id)
    {
        const auto &rows = page.tiles()->records();
        return *std::ranges::find(rows, QString::fromLatin1(id), &SystemTileRow::id);
    }
    SystemPageModel page{{*services.connectivity, *services.permissions, services.platform.power,
                          services.platform.accessories, services.platform.load,
                          services.platform.scheduler}};
    int changes = 0;
};

TEST(BatteryText, TellsWhatTheBatteryDoes)
{
    const std::vector<std::pair<BatteryInfo, const char16_t *>> cases = {
        {{}, u"Fora da tomada"},
        {{.isCharging = true, .isOnAC = true, .minutesRemaining = 80}, u"Carrega em 1 h 20 min"},
        {{.isCharging = true, .isOnAC = true}, u"Carregando"},
        {{.isOnAC = true}, u"Na tomada"},
    };
    for (const auto &[battery, text] : cases)
        EXPECT_EQ(batteryText(battery).replace(QChar::Nbsp, u' '), text);
}

TEST_F(SystemPageModelTest, ReadsOnlyWhileSomebodyWatches)
{
    desktop.power.set(BatteryInfo{.percent = 50});
    desktop.network.set(NetworkMonitor::Path{});
    EXPECT_EQ(desktop.load.reads, 0);
    EXPECT_EQ(desktop.scheduler.pendingCount(), 0U);

    desktop.load.memoryNow = {.used = 4'000'000'000, .total = 16'000'000'000};
    page.setWatched(true);
    EXPECT_EQ(tile("memory").value, u"4\u00a0GB");
    desktop.load.memoryNow->used = 15'000'000'000;
    desktop.scheduler.advance(1.9s);
    EXPECT_EQ(tile("memory").value, u"4\u00a0GB");
    desktop.scheduler.advance(0.1s);
    EXPECT_EQ(tile("memory").value, u"15\u00a0GB");
    EXPECT_TRUE(tile("memory").isWarning);
    EXPECT_EQ(changes, 1);
    desktop.scheduler.advance(10s);
    EXPECT_EQ(changes, 1) << "nothing else was new";

    page.setWatched(false);
    EXPECT_EQ(desktop.scheduler.pendingCount(), 0U);
}

TEST_F(SystemPageModelTest, WarnsByMoreThanColour)
{
    page.setWatched(true);
    const auto warns = [&](int percent, bool isCharging) {
        desktop.power.set(BatteryInfo{.percent = percent, .isCharging = isCharging});
        const SystemTileRow &battery = tile("battery");
        EXPECT_EQ(battery.isWarning, battery.symbol == u"exclamationmark.triangle.fill");
        EXPECT_EQ(battery.isWarning, battery.title == u"Bateria fraca");
        return battery.isWarning;
    };
    EXPECT_TRUE(warns(15, false));
    EXPECT_FALSE(warns(15, true));
    EXPECT_FALSE(warns(16, false));

    desktop.load.storageNow = {.available = 9, .total = 100};
    desktop.scheduler.advance(2s);
    EXPECT_TRUE(tile("storage").spoken.startsWith(u"Pouco espaço: 9\u00a0bytes"));
    desktop.load.storageNow = {.available = 10, .total = 100};
    desktop.scheduler.advance(2s);
    EXPECT_FALSE(tile("storage").isWarning);
}

TEST_F(SystemPageModelTest, AsksForBluetoothOnlyWhenTold)
{
    page.setWatched(true);
    EXPECT_EQ(desktop.bluetooth.starts, 0);
    EXPECT_EQ(tile("bluetooth").action, u"Verificar");

    desktop.permissions.statuses[PermissionKind::bluetooth] = {PermissionStatus::Granted{}};
    page.checkBluetooth();
    EXPECT_EQ(desktop.bluetooth.starts, 1);
    EXPECT_EQ(services.permissions->status(PermissionKind::bluetooth),
              desktop.permissions.statuses[PermissionKind::bluetooth]);
    desktop.bluetooth.set(true);
    EXPECT_EQ(tile("bluetooth").value, u"Ligado");
    EXPECT_EQ(tile("bluetooth").action, QString());
    desktop.bluetooth.set(std::nullopt, u"O BlueZ não respondeu."_qs);
    EXPECT_EQ(tile("bluetooth").value, u"Indisponível");
    EXPECT_EQ(tile("bluetooth").detail, u"O BlueZ não respondeu.");
}

TEST_F(SystemPageModelTest, SaysWhatIsMissing)
{
    desktop.power.missing = u"O UPower não respondeu."_qs;
    desktop.network.missing = u"O NetworkManager não respondeu."_qs;
    page.setWatched(true);
    EXPECT_EQ(tile("battery").detail, desktop.power.missing);
    EXPECT_EQ(tile("network").detail, desktop.network.missing);
    for (const char *id : {"storage", "memory", "processor"})
        EXPECT_EQ(tile(id).value, u"Indisponível");

    desktop.power.missing.clear();
    desktop.power.set(std::nullopt);
    EXPECT_FALSE(page.hasBattery());
    EXPECT_EQ(column(page.tiles(), "id").join(u' '), u"network bluetooth storage memory processor")
        << "a machine without a battery and accessories";
    desktop.accessories.devices = {{.id = u"a"_qs, .name = u"Mouse"_qs}};
    Q_EMIT desktop.accessories.changed();
    EXPECT_EQ(tile("accessories").title, u"Acessórios");
}

TEST_F(SystemPageModelTest, NamesTheNetwork)
{
    using Path = NetworkMonitor::Path;
    page.setWatched(true);
    const std::tuple<Path, bool, const char16_t *> cases[] = {
        {{true, true, true, u"Casa"_qs}, true, u"Casa, Wi-Fi"},
        {{true, false, true, {}}, true, u"Ethernet, Conectada"},
        {{true, false, true, u"LAN"_qs}, false, u"LAN, Ethernet · Wi-Fi desligado"},
        {{}, false, u"Sem conexão, Wi-Fi desligado"},
        {{}, true, u"Sem conexão"},
    };
    for (const auto &[path, wifi, shown] : cases) {
        desktop.network.wifi = wifi;
        desktop.network.set(path);
        EXPECT_EQ(tile("network").spoken, u"Rede: "_qs + QString::fromUtf16(shown));
    }
}

} // namespace
} // namespace velmo
