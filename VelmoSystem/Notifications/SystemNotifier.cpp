#include "VelmoSystem/Notifications/SystemNotifier.h"

namespace velmo {

SystemNotifier::SystemNotifier(NotificationServer &server, Scheduler &scheduler)
    : m_server(server), m_scheduler(scheduler)
{
}

} // namespace velmo
