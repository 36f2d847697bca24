#pragma once

#include <QObject>
#include <QString>

#include <optional>

namespace velmo {

struct BatteryInfo {
    int percent = 0;
    bool isCharging = false;
    bool isOnAC = false;
    std::optional<int> minutesRemaining; ///< to full; only while charging

    bool operator==(const BatteryInfo &) const = default;
};

/// The machine's power. Answers come from memory; they are followed once somebody asked.
class PowerInfo : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Nothing on a machine without a battery, and until the desktop has answered.
    virtual std::optional<BatteryInfo> battery() const = 0;
    /// What is missing to know more, for the user; empty if nothing is, as on a machine without a
    /// battery.
    virtual QString issue() const = 0;

Q_SIGNALS:
    void changed();
};

} // namespace velmo
