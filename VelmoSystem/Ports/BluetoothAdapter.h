#pragma once

#include <QObject>
#include <QString>

#include <optional>

namespace velmo {

/// The machine's Bluetooth. It is left alone until `start`.
class BluetoothAdapter : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// Begins to ask and to follow. Further calls ask again.
    virtual void start() = 0;
    /// Whether it is on; nothing before an answer or without an adapter.
    virtual std::optional<bool> isPoweredOn() const = 0;
    /// Why there is no answer, for the user; empty if there is one or none was asked for.
    virtual QString issue() const = 0;

Q_SIGNALS:
    void changed();
};

} // namespace velmo
