#include "VelmoSystem/Linux/DBus/BusListener.h"

namespace velmo {

BusListener::BusListener(QDBusConnection bus, const QString &service, const QString &path,
                         const QString &interface, const QString &signal,
                         std::function<void(const QVariantList &)> take)
    : m_take(std::move(take))
{
    bus.connect(service, path, interface, signal, this, SLOT(receive(QDBusMessage)));
}

} // namespace velmo
