#pragma once

#include "tests/support/PrivateBus.h"

namespace velmo {

/// A session bus with a real gnome-keyring, both our own, in a home that goes with the test. The
/// process's session bus is this one while it lives.
class KeyringSession {
public:
    KeyringSession();
    ~KeyringSession();
    Q_DISABLE_COPY_MOVE(KeyringSession)

    /// Starts the keyring with its password, so that the default collection is open. Without the
    /// option, a keyring that was never opened has no collection.
    void start(const QStringList &options = {"--unlock"});
    void lock();
    void kill();
    /// The labels of all items, as any other program sees them.
    QStringList labels() const;

private:
    TemporaryFolder m_home;
    PrivateBus m_bus;
    QDBusConnection m_peer = m_bus.connect();
    QProcess m_keyring;
    QByteArray m_addressBefore = qgetenv("DBUS_SESSION_BUS_ADDRESS");
};

} // namespace velmo
