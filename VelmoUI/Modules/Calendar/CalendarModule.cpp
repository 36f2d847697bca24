#include "VelmoUI/Modules/Calendar/CalendarModule.h"

#include "VelmoSystem/Verbs/AgendaVerbs.h"
#include "VelmoUI/Modules/Calendar/CalendarFeedsModel.h"
#include "VelmoUI/Modules/Calendar/CalendarPageModel.h"

#include <QJsonObject>

namespace velmo {

namespace {

/// How long before an event its card comes to the front of Home.
constexpr Seconds nearTime = 900s;

QUrl qml(const char *name)
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Calendar/") + QLatin1String(name));
}

} // namespace

CalendarModule::CalendarModule(const CalendarServices &services, SettingsStore &settings,
                               SystemNotifier &notifier)
    : m_services(services), m_settings(settings),
      m_alerts(services.calendar, settings, notifier, services.activity, services.fileViewer,
               services.scheduler)
{
    connect(&services.calendar, &CalendarService::changed, this, &CalendarModule::update);
    AgendaVerbs::connectChanges(services.calendar, this, contentListener());
}

void CalendarModule::update()
{
    const Date now = m_services.scheduler.now();
    m_nextUpdate.cancel();
    if (const CalendarEvent *next = m_services.calendar.nextEvent(now)) {
        const Date near = next->start - nearTime + 1ms; // less than that before it
        m_nextUpdate =
            m_services.scheduler.at(near > now ? near : next->start, [this] { update(); });
    }
    Q_EMIT cardsChanged();
    Q_EMIT peekChanged();
}

NotchModule::View CalendarModule::makeView(PanelPort &panel)
{
    return {qml("CalendarPage.qml"), std::make_unique<CalendarPageModel>(m_services, panel)};
}

std::vector<NotchModule::Card> CalendarModule::cards()
{
    return {
        {.card = HomeCard::agenda,
         .make = [this](PanelPort &panel) -> View {
             return {qml("AgendaCard.qml"), std::make_unique<CalendarPageModel>(m_services, panel)};
         },
         .isActive =
             [this] {
                 const Date now = m_services.scheduler.now();
                 const CalendarEvent *next = m_services.calendar.nextEvent(now);
                 return next && next->start - now < nearTime;
             }}};
}

std::optional<NotchModule::Peek> CalendarModule::peek() const
{
    const Date now = m_services.scheduler.now();
    const CalendarEvent *next = m_services.calendar.nextEvent(now);
    if (!next || localDateTime(next->start).date() != localDateTime(now).date())
        return std::nullopt;
    return Peek{symbol(), next->title, AgendaRows::when(*next, now)};
}

std::vector<NotchModule::SettingsSection> CalendarModule::settings()
{
    return {{.pane = SettingsPane::modules, .source = qml("CalendarSettings.qml"), .make = [this] {
                 return std::make_unique<CalendarFeedsModel>(m_services.calendar, m_settings);
             }}};
}

std::vector<Verb> CalendarModule::verbs()
{
    return AgendaVerbs::make(m_services.calendar, m_services.fileViewer, m_services.scheduler);
}

QJsonValue CalendarModule::status() const
{
    return AgendaVerbs::status(m_services.calendar, m_services.scheduler.now());
}

void CalendarModule::start()
{
    m_services.calendar.start();
}

} // namespace velmo
