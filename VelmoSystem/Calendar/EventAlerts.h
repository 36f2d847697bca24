#pragma once

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Calendar/CalendarService.h"

namespace velmo {

class ActivityCenter;
class FileViewer;
class SystemNotifier;

/// Tells the user of an event before it begins, as long before as the settings say: once by a
/// notification, and by a countdown at the notch until it begins.
class EventAlerts : public QObject {
    Q_OBJECT

public:
    /// All of them outlive it.
    EventAlerts(CalendarService &calendar, SettingsStore &settings, SystemNotifier &notifier,
                ActivityCenter &activity, FileViewer &fileViewer, Scheduler &scheduler);

private:
    void schedule();
    void alert(const CalendarEvent &event);
    void updateCountdown();
    Seconds lead() const;

    CalendarService &m_calendar;
    SettingsStore &m_settings;
    SystemNotifier &m_notifier;
    ActivityCenter &m_activity;
    FileViewer &m_fileViewer;
    Scheduler &m_scheduler;
    std::map<QString, ScheduledTask> m_alerts; ///< by event
    ScheduledTask m_nextCountdown;
    bool m_isCounting = false;
    SettingsStore::Observation m_observation;
};

} // namespace velmo
