#pragma once

#include <QObject>
#include <QString>

#include <optional>
#include <vector>

namespace velmo {

struct AccessoryInfo {
    QString id;
    QString name;
    QString symbol; ///< "keyboard", "computermouse", "headphones" …
    std::optional<int> batteryPercent;

    bool operator==(const AccessoryInfo &) const = default;
};

/// Connected devices that have a battery of their own. Answers come from memory.
class Accessories : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    virtual std::vector<AccessoryInfo> connected() const = 0;

Q_SIGNALS:
    void changed();
};

} // namespace velmo
