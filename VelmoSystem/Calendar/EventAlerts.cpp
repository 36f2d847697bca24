#include "VelmoSystem/Calendar/EventAlerts.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoSystem/Notifications/SystemNotifier.h"
#include "VelmoSystem/Ports/FileViewer.h"

#include <cmath>

namespace velmo {

namespace {

constexpr Seconds farthest = 86'400s;
constexpr int priority = 7; ///< before timers

QString liveID()
{
    return QStringLiteral("calendar.next");
}

QString module()
{
    return QStringLiteral("calendar");
}

} // namespace

EventAlerts::EventAlerts(CalendarService &calendar, SettingsStore &settings,
                         SystemNotifier &notifier, ActivityCenter &activity, FileViewer &fileViewer,
                         Scheduler &scheduler)
    : m_calendar(calendar), m_settings(settings), m_notifier(notifier), m_activity(activity),
      m_fileViewer(fileViewer), m_scheduler(scheduler),
      m_observation(settings.observe([this](const AppSettings &before, const AppSettings &after) {
          if (before.eventAlertMinutes != after.eventAlertMinutes)
              schedule();
      }))
{
    connect(&calendar, &CalendarService::changed, this, &EventAlerts::schedule);
}

Seconds EventAlerts::lead() const
{
    return std::chrono::minutes(m_settings.settings().eventAlertMinutes);
}

void EventAlerts::schedule()
{
    m_alerts.clear();
    const Date now = m_scheduler.now();
    if (lead() >= 1min) {
        for (const CalendarEvent &event : m_calendar.upcoming()) {
            const Date date = event.start - lead();
            if (!event.isAllDay && event.start - now < farthest && date > now)
                m_alerts[event.id] = m_scheduler.at(date, [this, event] { alert(event); });
        }
    }
    updateCountdown();
}

void EventAlerts::alert(const CalendarEvent &event)
{
    updateCountdown();
    const double seconds = (event.start - m_scheduler.now()).count();
    if (seconds <= 0)
        return; // it began while the machine slept
    SystemNotifier::Notification notification{
        .title = event.title,
        .body = QStringLiteral("Começa em %1 min").arg(int(std::ceil(seconds / 60)))};
    SystemNotifier::Act join = [](const QString &) {};
    if (event.meeting) {
        notification.body += QStringLiteral(" · ") + MeetingLinks::title(event.meeting->provider);
        notification.actions = {{QStringLiteral("join"), QStringLiteral("Entrar")}};
        join = [this, url = event.meeting->url](const QString &) { m_fileViewer.open(url); };
    }
    m_notifier.send(QStringLiteral("event.") + event.id, notification,
                    {.module = module(), .item = event.id, .verb = {}}, join);
}

/// Shows the next event's from its alert to its beginning.
void EventAlerts::updateCountdown()
{
    const Date now = m_scheduler.now();
    const CalendarEvent *next = lead() >= 1min ? m_calendar.nextEvent(now) : nullptr;
    const bool isNear = next && next->start - lead() <= now;
    m_nextCountdown.cancel();
    if (next)
        m_nextCountdown = m_scheduler.at(isNear ? next->start : next->start - lead(),
                                         [this] { updateCountdown(); });
    if (!isNear) {
        if (std::exchange(m_isCounting, false))
            m_activity.finish(liveID(), std::nullopt);
        return;
    }
    m_isCounting = true;
    m_activity.upsert({.id = liveID(),
                       .source = module(),
                       .symbol = QStringLiteral("calendar"),
                       .title = next->title,
                       .detail = next->location,
                       .countdown = DateRange{next->start - lead(), next->start},
                       .priority = priority});
}

} // namespace velmo
