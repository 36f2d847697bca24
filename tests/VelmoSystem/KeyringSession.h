#pragma once

#include "tests/support/TemporaryFolder.h"

#include <QDBusConnection>
#include <QProcess>

namespace velmo {

/// A session bus with a real gnome-keyring, both our own, in a home that goes with the test. The
/// bus starts no service by itself. The process's session bus is this one while it lives.
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
    QProcess m_busProcess;
    QProcess m_keyring;
    QString m_connectionName;
    QByteArray m_addressBefore;
};

} // namespace velmo
