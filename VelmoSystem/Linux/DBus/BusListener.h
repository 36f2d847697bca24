#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QObject>

#include <functional>

namespace velmo {

/// Hears one signal of an object on the bus, for as long as it exists.
class BusListener : public QObject {
    Q_OBJECT

public:
    BusListener(QDBusConnection bus, const QString &service, const QString &path,
                const QString &interface, const QString &signal,
                std::function<void(const QVariantList &arguments)> take);

private Q_SLOTS:
    void receive(const QDBusMessage &message) { m_take(message.arguments()); }

private:
    std::function<void(const QVariantList &)> m_take;
};

} // namespace velmo
