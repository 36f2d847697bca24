#pragma once

#include "VelmoSystem/Calendar/EventAlerts.h"
#include "VelmoUI/Modules/Calendar/CalendarServices.h"
#include "VelmoUI/Modules/Frame/NotchModule.h"

namespace velmo {

/// What is coming, from the desktop's calendars and from feeds.
class CalendarModule : public NotchModule {
public:
    CalendarModule(const CalendarServices &services, SettingsStore &settings,
                   SystemNotifier &notifier);

    QString id() const override { return QStringLiteral("calendar"); }
    QString title() const override { return QStringLiteral("Agenda"); }
    QString symbol() const override { return QStringLiteral("calendar"); }
    View makeView(PanelPort &panel) override;
    std::vector<Card> cards() override;
    std::optional<Peek> peek() const override;
    std::vector<SettingsSection> settings() override;
    std::vector<Verb> verbs() override;
    QJsonValue status() const override;
    void start() override;

private:
    void update();

    CalendarServices m_services;
    SettingsStore &m_settings;
    EventAlerts m_alerts;
    ScheduledTask m_nextUpdate; ///< when the next event is near, and when it begins
};

} // namespace velmo
