#pragma once

#include "tests/support/PrivateBus.h"

namespace velmo {

/// A session bus that starts the real Evolution Data Server, in a home that goes with the test. The
/// process's own data and settings are in that home while it lives.
class EvolutionSession {
public:
    enum class Past { used, unused };

    explicit EvolutionSession(Past past = Past::used);
    ~EvolutionSession();
    Q_DISABLE_COPY_MOVE(EvolutionSession)

    QDBusConnection connect() const { return m_bus.connect(); }
    /// Whether "Sources", the registry, or "Calendar", the factory, runs.
    bool runs(const QString &kind) const { return !name(kind).isEmpty(); }
    void start(const QString &kind) const;
    /// Sends a signal, such as SIGKILL.
    void signal(const QString &kind, int number) const;

    /// Makes a source of a key file, as the settings of GNOME and Evolution do.
    void addSource(const QString &uid, const QString &keys) const;
    void changeSource(const QString &uid, const QString &from, const QString &to) const;

private:
    QString prepare(Past past) const;
    QString name(const QString &kind) const;
    QDBusMessage call(const QString &path, const QString &interface, const QString &method,
                      const QVariantList &arguments) const;

    TemporaryFolder m_home;
    QByteArray m_dataBefore = qgetenv("XDG_DATA_HOME");
    QByteArray m_configBefore = qgetenv("XDG_CONFIG_HOME");
    PrivateBus m_bus;
    QDBusConnection m_peer = m_bus.connect();
};

} // namespace velmo
