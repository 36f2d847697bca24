#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Notch/Route.h"
#include "VelmoSystem/Ports/NotificationServer.h"

#include <functional>
#include <map>

namespace velmo {

/// Notifications now and later. What is scheduled lives as long as the run: its sources schedule it
/// again at the next start. Main thread only.
class SystemNotifier : public QObject {
    Q_OBJECT

public:
    using Notification = NotificationServer::Notification;

    SystemNotifier(NotificationServer &server, Scheduler &scheduler);

    /// What a button of a notification does.
    using Act = std::function<void(const QString &action)>;

    /// Shows it now, in place of what waits or shows under the identifier. A click goes to `route`.
    void send(
        const QString &identifier, const Notification &notification, const Route &route,
        const Act &act = [](const QString &) {});
    /// At `date` by the wall clock, or at once if that is over; what fell due during sleep or by a
    /// setting of the clock comes right then.
    /// Replaces what waits under the same identifier.
    void schedule(const QString &identifier, const Notification &notification, Date date,
                  const Route &route);
    /// Forgets what waits or shows under the identifier.
    void cancel(const QString &identifier);

    /// Set once at start.
    std::function<void(const Route &)> onActivated = [](const Route &) {};

private:
    struct Shown {
        Route route;
        Act act;
    };

    NotificationServer &m_server;
    Scheduler &m_scheduler;
    std::map<QString, ScheduledTask> m_pending;
    std::map<QString, Shown> m_shown;
};

} // namespace velmo
