#pragma once

#include <QDBusConnection>
#include <QObject>

namespace velmo {

/// Reports when the machine woke from sleep, by logind. Without logind or a system bus it
/// stays silent.
class SleepMonitor : public QObject {
    Q_OBJECT

public:
    explicit SleepMonitor(QDBusConnection systemBus);

Q_SIGNALS:
    void didWake();

private Q_SLOTS:
    void prepareForSleep(bool isGoingToSleep);
};

} // namespace velmo
