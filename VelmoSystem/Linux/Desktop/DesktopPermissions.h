#pragma once

#include "VelmoSystem/Ports/PermissionSource.h"

#include <QDBusConnection>
#include <QObject>
#include <QVariant>

#include <functional>

namespace velmo {

class BluetoothAdapter;

/// `PermissionSource` of a Linux desktop, which asks nothing of most kinds: granted where what they
/// need is there.
class DesktopPermissions : public PermissionSource {
public:
    DesktopPermissions(QDBusConnection sessionBus, BluetoothAdapter &bluetooth);

    void read(PermissionKind kind, Answer answer) override;
    void request(PermissionKind kind, Answer answer) override;
    void openSettings(PermissionKind kind) override;
    bool hasBundle() const override { return m_bus.isConnected(); }

private:
    void findService(const QString &name, const Answer &answer);
    /// `answered` gets the first argument of the answer, an invalid one where there is none.
    void askBus(const QString &method, const QVariantList &arguments,
                std::function<void(const QVariant &)> answered);

    QDBusConnection m_bus;
    BluetoothAdapter &m_bluetooth;
    QObject m_context; ///< calls under way end with it
};

} // namespace velmo
