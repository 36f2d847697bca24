#pragma once

#include "VelmoSystem/Ports/BluetoothAdapter.h"

#include <QDBusConnection>

namespace velmo {

/// `BluetoothAdapter` with BlueZ on the system bus: on if any adapter is powered.
class BlueZAdapter : public BluetoothAdapter {
    Q_OBJECT

public:
    explicit BlueZAdapter(QDBusConnection systemBus);

    void start() override;
    std::optional<bool> isPoweredOn() const override { return m_isPoweredOn; }
    QString issue() const override { return m_issue; }

private:
    QDBusConnection m_bus;
    std::optional<bool> m_isPoweredOn;
    QString m_issue;
};

} // namespace velmo
