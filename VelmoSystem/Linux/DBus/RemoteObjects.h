#pragma once

#include "VelmoSystem/Linux/DBus/DBusValue.h"

#include <QDBusConnection>
#include <QDBusServiceWatcher>
#include <QObject>

#include <functional>
#include <map>
#include <set>

class QDBusMessage;

namespace velmo {

/// Objects of a D-Bus service, one interface of each: their properties are asked for without
/// waiting and then followed. What has another type than it should is as if it weren't there.
class RemoteObjects : public QObject {
    Q_OBJECT

public:
    /// Whether the bus may start the service for a call.
    enum class Activation { allowed, never };

    RemoteObjects(QDBusConnection bus, QString service, Activation activation);

    /// Forgets everything and emits `shouldAsk`.
    void start();
    /// No such service, or no bus.
    bool isMissing() const { return m_isMissing; }
    /// An answer is still to come.
    bool isWaiting() const { return m_pendingCount > 0; }

    /// `take` gets the first value of the answer, an invalid one if the call failed.
    void call(const QString &path, const QString &interface, const QString &method,
              const QVariantList &arguments, std::function<void(const QVariant &)> take);
    /// `slot` gets a signal of any object of the service.
    void listen(const QString &interface, const QString &signal, QObject *receiver,
                const char *slot);

    void follow(const QString &path, const QString &interface);
    /// Follows these objects, and no others with this interface.
    void followOnly(const QList<QDBusObjectPath> &paths, const QString &interface);
    void forget(const QString &path);
    /// Of the objects with this interface, sorted.
    QStringList paths(const QString &interface) const;

    template <class Value>
    std::optional<Value> value(const QString &path, const QString &name) const
    {
        const auto found = m_objects.find(path);
        return found == m_objects.end()
                   ? std::nullopt
                   : DBusValue::as<Value>(found->second.properties.value(name));
    }

Q_SIGNALS:
    /// Time to follow what is wanted: at the start, and each time the service appears.
    void shouldAsk();
    /// No answer is to come any more, and something may be different.
    void changed();

private Q_SLOTS:
    void propertiesChanged(const QString &interface, const QVariantMap &changed,
                           const QStringList &invalidated, const QDBusMessage &message);

private:
    struct Object {
        QString interface;
        QVariantMap properties;
    };

    void clear();
    void askProperties(const QString &path, const QString &interface);
    void emitIfComplete();

    QDBusConnection m_bus;
    QString m_service;
    Activation m_activation;
    QDBusServiceWatcher m_watcher;
    bool m_isMissing = false;
    int m_pendingCount = 0;
    int m_start = 0; ///< an answer to an earlier start's call is passed over
    std::map<QString, Object> m_objects;
    std::set<QString> m_heardInterfaces;
};

} // namespace velmo
