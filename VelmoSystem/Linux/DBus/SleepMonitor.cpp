#include "VelmoSystem/Linux/DBus/SleepMonitor.h"

namespace velmo {

SleepMonitor::SleepMonitor(QDBusConnection systemBus)
{
    systemBus.connect(QStringLiteral("org.freedesktop.login1"),
                      QStringLiteral("/org/freedesktop/login1"),
                      QStringLiteral("org.freedesktop.login1.Manager"),
                      QStringLiteral("PrepareForSleep"), this, SLOT(prepareForSleep(bool)));
}

void SleepMonitor::prepareForSleep(bool isGoingToSleep)
{
    if (!isGoingToSleep)
        Q_EMIT didWake();
}

} // namespace velmo
