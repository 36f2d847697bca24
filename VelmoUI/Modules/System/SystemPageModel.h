#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Device/ConnectivityService.h"
#include "VelmoSystem/Permissions/PermissionsCenter.h"
#include "VelmoSystem/Ports/Accessories.h"
#include "VelmoSystem/Ports/MachineLoad.h"
#include "VelmoSystem/Ports/PowerInfo.h"
#include "VelmoUI/Design/RecordListModel.h"
#include "VelmoUI/Modules/Frame/ModulePage.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The sources of the readings. All of them outlive the module.
struct SystemSources {
    ConnectivityService &connectivity;
    PermissionsCenter &permissions;
    PowerInfo &power;
    Accessories &accessories;
    MachineLoad &load;
    Scheduler &scheduler;
};

/// One aspect of the machine, ready to show.
struct SystemTileRow {
    QString
        id; ///< "battery", "network", "bluetooth", "accessories", "storage", "memory", "processor"
    QString symbol;
    QString title;
    QString value;
    QString detail;
    double progress = -1; ///< 0 to 1, negative where there is nothing to measure
    bool isWarning = false;
    QString action; ///< of the tile's button, empty if it has none
    QString spoken; ///< for screen readers

    bool operator==(const SystemTileRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(SystemTileRow, (),
                      (id, symbol, title, value, detail, progress, isWarning, action, spoken))

struct AccessoryRow {
    QString id;
    QString symbol;
    QString name;
    QString percent; ///< empty if the device doesn't report it
    QString spoken;  ///< for screen readers

    bool operator==(const AccessoryRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(AccessoryRow, (), (id, symbol, name, percent, spoken))

/// The System page of one panel. It reads every two seconds while it is seen, and never otherwise.
class SystemPageModel : public velmo::ModulePage {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *tiles READ tiles CONSTANT)
    Q_PROPERTY(QAbstractItemModel *accessories READ accessories CONSTANT)
    Q_PROPERTY(bool hasBattery READ hasBattery NOTIFY hasBatteryChanged)
    Q_PROPERTY(int accessoryCount READ accessoryCount NOTIFY accessoryCountChanged)

public:
    explicit SystemPageModel(const SystemSources &sources);

    RecordListModel<SystemTileRow> *tiles() { return &m_tiles; }
    RecordListModel<AccessoryRow> *accessories() { return &m_accessories; }
    /// Whether there is a tile of it: a machine without one has none.
    bool hasBattery() const { return m_hasBattery; }
    int accessoryCount() const { return m_accessories.rowCount(); }

    /// Asks for Bluetooth's state, which nobody reads before.
    Q_INVOKABLE void checkBluetooth();

Q_SIGNALS:
    void accessoryCountChanged();
    void hasBatteryChanged();

private:
    void watch(bool isWatched) override;
    void update();
    void updateAccessories();
    void updateRegularly();
    SystemTileRow network() const;
    SystemTileRow bluetooth() const;

    const SystemSources m_sources;
    RecordListModel<SystemTileRow> m_tiles;
    RecordListModel<AccessoryRow> m_accessories;
    bool m_hasBattery = false;
    ScheduledTask m_nextUpdate;
};

/// What the battery does: "Carrega em 40 min", "Na tomada", "Fora da tomada".
QString batteryText(const BatteryInfo &battery);

} // namespace velmo
