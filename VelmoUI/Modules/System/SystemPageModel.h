#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Ports/PowerInfo.h"
#include "VelmoUI/Design/RecordListModel.h"

#include <QtQml/qqmlregistration.h>

namespace velmo {

class AppServices;

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
    QString percent; ///< empty if the device doesn't tell
    QString spoken;  ///< for screen readers

    bool operator==(const AccessoryRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(AccessoryRow, (), (id, symbol, name, percent, spoken))

/// The System page of one panel. While somebody looks, it is up to date to two seconds; otherwise
/// it rests.
class SystemPageModel : public QObject {
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Made by its module")
    Q_PROPERTY(QAbstractItemModel *tiles READ tiles CONSTANT)
    Q_PROPERTY(QAbstractItemModel *accessories READ accessories CONSTANT)
    Q_PROPERTY(bool hasBattery READ hasBattery NOTIFY hasBatteryChanged)
    Q_PROPERTY(int accessoryCount READ accessoryCount NOTIFY accessoryCountChanged)

public:
    explicit SystemPageModel(AppServices &services);

    RecordListModel<SystemTileRow> *tiles() { return &m_tiles; }
    RecordListModel<AccessoryRow> *accessories() { return &m_accessories; }
    /// Whether there is a tile of it: a machine without one has none.
    bool hasBattery() const { return m_hasBattery; }
    int accessoryCount() const { return m_accessories.rowCount(); }

    /// Whether the page can be seen.
    Q_INVOKABLE void setWatched(bool watched);
    /// Asks for Bluetooth's state, which nobody reads before.
    Q_INVOKABLE void checkBluetooth();

Q_SIGNALS:
    void accessoryCountChanged();
    void hasBatteryChanged();

private:
    void update();
    void updateAccessories();
    void updateRegularly();
    SystemTileRow network() const;
    SystemTileRow bluetooth() const;

    AppServices &m_services;
    RecordListModel<SystemTileRow> m_tiles;
    RecordListModel<AccessoryRow> m_accessories;
    bool m_isWatched = false;
    bool m_hasBattery = false;
    ScheduledTask m_nextUpdate;
};

/// What the battery does: "1 h 20 min restantes", "Carrega em 40 min", "Na tomada".
QString batteryText(const BatteryInfo &battery);

} // namespace velmo
