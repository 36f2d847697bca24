#pragma once

#include "VelmoSystem/Linux/DBus/RemoteObjects.h"
#include "VelmoSystem/Ports/BluetoothAdapter.h"

namespace velmo {

/// `BluetoothAdapter` with BlueZ on the system bus: on if any adapter is powered. BlueZ is not
/// started for it.
class BlueZAdapter : public BluetoothAdapter {
    Q_OBJECT

public:
    explicit BlueZAdapter(QDBusConnection systemBus);

    void start() override;
    std::optional<bool> isPoweredOn() const override { return m_isPoweredOn; }
    QString issue() const override { return m_issue; }

private Q_SLOTS:
    void interfacesAdded(const QDBusMessage &message);
    void interfacesRemoved(const QDBusObjectPath &path, const QStringList &interfaces);

private:
    void ask();
    void update();

    RemoteObjects m_objects;
    bool m_isStarted = false;
    bool m_isListed = false; ///< BlueZ has listed its adapters
    std::optional<bool> m_isPoweredOn;
    QString m_issue;
};

} // namespace velmo
