#include "VelmoUI/Modules/Calendar/CalendarPageModel.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Calendar/EventLine.h"
#include "VelmoCore/Foundation/Words.h"
#include "VelmoCore/Notes/NotesStore.h"
#include "VelmoSystem/Ports/Applications.h"
#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoSystem/Ports/PermissionSource.h"

#include <QLocale>
#include <QPointer>

#include <algorithm>
#include <cmath>

namespace velmo {

namespace {

/// How many days the agenda lists.
constexpr int listedDays = 15;

Date startOf(const QDate &day)
{
    return Date(Seconds(double(day.startOfDay().toSecsSinceEpoch())));
}

QDate monthOf(const QDate &day)
{
    return {day.year(), day.month(), 1};
}

} // namespace

CalendarPageModel::CalendarPageModel(const CalendarServices &services, PanelPort &panel)
    : m_services(services), m_calendar(services.calendar), m_panel(panel)
{
    connect(&m_calendar, &CalendarService::changed, this, [this] {
        if (isWatched())
            load();
    });
    connect(&panel, &PanelPort::openChanged, this, [this] {
        if (!m_panel.isOpen())
            m_calendar.finishRemoval();
    });
    m_events = m_calendar.upcoming();
    update();
}

void CalendarPageModel::go(const Route &route)
{
    if (!route.item.isEmpty())
        choose(route.item);
}

void CalendarPageModel::watch(bool isWatched)
{
    if (!isWatched) {
        m_nextTick.cancel();
        return;
    }
    load();
    tick();
}

QDate CalendarPageModel::today() const
{
    return localDateTime(m_services.scheduler.now()).date();
}

/// First and last of the agenda.
std::pair<QDate, QDate> CalendarPageModel::shownDays() const
{
    const QDate first = m_firstDay.isValid() ? m_firstDay : today();
    return {first, first.addDays(listedDays)};
}

void CalendarPageModel::load()
{
    const auto [first, last] = shownDays();
    const QDate month = m_shownMonth.isValid() ? m_shownMonth : monthOf(first);
    // With the days of other months in its weeks.
    const QDate from = std::min(first, month.addDays(-7));
    const QDate to = std::max(last, month.addMonths(1).addDays(7));
    const int number = ++m_loadCount;
    m_calendar.events(startOf(from), startOf(to.addDays(1)),
                      [page = QPointer(this), number](const std::vector<CalendarEvent> &events) {
                          if (!page || page->m_loadCount != number)
                              return;
                          page->m_events = events;
                          page->update();
                      });
    update();
}

/// The countdown is in minutes.
void CalendarPageModel::tick()
{
    const double seconds = m_services.scheduler.now().time_since_epoch().count();
    m_nextTick =
        m_services.scheduler.after(Seconds(60 - std::fmod(seconds, 60)), [this] { tick(); });
    update();
}

void CalendarPageModel::update()
{
    const Date now = m_services.scheduler.now();
    const auto [first, last] = shownDays();
    const QTimeZone zone = QTimeZone::systemTimeZone();
    m_agenda.setRecords(AgendaRows::columns(CalendarDays::list(m_events, first, last, zone),
                                            m_perColumn, m_chosen, now));
    const QDate month = m_shownMonth.isValid() ? m_shownMonth : monthOf(first);
    m_month.setRecords(
        AgendaRows::month(CalendarDays::month(m_events, month, QLocale().firstDayOfWeek(), zone),
                          today(), m_firstDay));

    const auto chosen = std::ranges::find(m_events, m_chosen, &CalendarEvent::id);
    if (chosen == m_events.end())
        m_chosen.clear();
    const CalendarEvent *event = nullptr;
    if (!m_chosen.isEmpty())
        event = &*chosen;
    else if (const auto *current = m_calendar.currentEvent(now))
        event = current;
    else
        event = m_calendar.nextEvent(now);
    m_event = event ? std::optional(*event) : std::nullopt;
    Q_EMIT changed();
}

QStringList CalendarPageModel::weekdays() const
{
    QStringList names;
    const QLocale locale;
    for (int place = 0; place < 7; ++place) {
        const int weekday = (int(locale.firstDayOfWeek()) - 1 + place) % 7 + 1;
        names << locale.standaloneDayName(weekday, QLocale::NarrowFormat);
    }
    return names;
}

QString CalendarPageModel::monthTitle() const
{
    const QDate month = m_shownMonth.isValid() ? m_shownMonth : shownDays().first;
    const QLocale locale;
    QString title = locale.standaloneMonthName(month.month());
    title[0] = title[0].toUpper();
    return month.year() == today().year() ? title : title + u' ' + QString::number(month.year());
}

QString CalendarPageModel::state() const
{
    const PermissionStatus access = m_calendar.access();
    if (std::holds_alternative<PermissionStatus::Partial>(access.value))
        return access.label();
    for (const CalendarSubscription &feed : m_calendar.subscriptions()) {
        if (const auto error = m_calendar.subscriptionError(feed.id))
            return QStringLiteral("%1: %2").arg(feed.name, *error);
    }
    return {};
}

QString CalendarPageModel::title() const
{
    return m_event ? m_event->title : QString();
}

QString CalendarPageModel::when() const
{
    return m_event ? AgendaRows::when(*m_event, m_services.scheduler.now()) : QString();
}

QString CalendarPageModel::countdown() const
{
    return m_event ? AgendaRows::countdown(*m_event, m_services.scheduler.now()) : QString();
}

QString CalendarPageModel::detail() const
{
    if (!m_event)
        return {};
    QStringList parts;
    if (m_event->location)
        parts << m_event->location->simplified();
    parts << m_event->calendarTitle;
    if (!m_event->canEdit)
        parts << QStringLiteral("somente leitura");
    return parts.join(QStringLiteral(" · "));
}

QString CalendarPageModel::undoTitle() const
{
    if (!m_calendar.removedTitle().isEmpty())
        return QStringLiteral("Removido · Desfazer");
    return m_change ? QStringLiteral("Alterado · Desfazer") : QString();
}

void CalendarPageModel::setRowsPerColumn(int count)
{
    if (count < 1 || count == m_perColumn)
        return;
    m_perColumn = count;
    update();
}

void CalendarPageModel::choose(const QString &event)
{
    m_chosen = event;
    endEditing();
    update();
}

void CalendarPageModel::unchoose()
{
    choose({});
}

void CalendarPageModel::turnMonth(int months)
{
    const QDate month = m_shownMonth.isValid() ? m_shownMonth : monthOf(shownDays().first);
    m_shownMonth = month.addMonths(months);
    load();
}

void CalendarPageModel::showDay(const QString &day)
{
    const QDate date = QDate::fromString(day, Qt::ISODate);
    m_firstDay = date == today() ? QDate() : date;
    m_shownMonth = monthOf(date.isValid() ? date : today());
    load();
}

void CalendarPageModel::join()
{
    if (canJoin())
        m_services.fileViewer.open(m_event->meeting->url);
}

void CalendarPageModel::openNote()
{
    if (!m_event)
        return;
    const Note note =
        m_services.notes.meetingNote(m_event->id, m_event->title, m_event->start, m_event->end);
    m_panel.go({.module = QStringLiteral("notes"), .item = uuidText(note.id), .verb = {}});
}

void CalendarPageModel::readLine(const QString &line)
{
    m_understood.clear();
    m_hasProblem = false;
    const Date now = m_services.scheduler.now();
    const auto read = EventLines::read(line, now);
    if (const auto *event = std::get_if<EventLine>(&read))
        m_understood = QStringLiteral("%1 · %2").arg(
            event->title, AgendaRows::when({.title = event->title,
                                            .start = event->start,
                                            .end = event->start + event->duration},
                                           now));
    Q_EMIT changed();
}

void CalendarPageModel::save(const QString &line)
{
    if (m_isSaving)
        return;
    const auto read = EventLines::read(line, m_services.scheduler.now());
    const auto *event = std::get_if<EventLine>(&read);
    const auto *problem = std::get_if<EventLineProblem>(&read);
    if (problem && m_edited && *problem == EventLineProblem::noStart) {
        // Only its title is another; it may be all day long.
        change(*m_edited, line.simplified(), m_edited->start, m_edited->duration());
        return;
    }
    if (problem) {
        report(EventLines::description(*problem));
        return;
    }
    if (m_edited) {
        change(*m_edited, event->title, event->start, event->duration);
        return;
    }
    m_isSaving = true;
    Q_EMIT changed();
    m_calendar.create(event->title, event->start, event->duration,
                      [page = QPointer(this)](const std::optional<QString> &why) {
                          if (!page)
                              return;
                          page->m_isSaving = false;
                          page->report(why.value_or(QString()));
                          if (!why)
                              Q_EMIT page->saved();
                      });
}

void CalendarPageModel::change(const CalendarEvent &event, const QString &title, Date start,
                               Seconds duration)
{
    m_isSaving = true;
    Q_EMIT changed();
    m_calendar.update(
        event.id, title, start, duration,
        [page = QPointer(this), event](const std::optional<QString> &why) {
            if (!page)
                return;
            page->m_isSaving = false;
            page->report(why.value_or(QString()));
            if (why)
                return;
            page->m_change.emplace(
                Change{event, page->m_services.scheduler.after(CalendarService::undoTime, [page] {
                           page->m_change.reset();
                           Q_EMIT page->changed();
                       })});
            page->endEditing();
            Q_EMIT page->saved();
        });
}

void CalendarPageModel::report(const QString &problem)
{
    m_understood = problem;
    m_hasProblem = !problem.isEmpty();
    Q_EMIT changed();
}

QString CalendarPageModel::edit()
{
    if (!canEdit())
        return {};
    m_edited = m_event;
    m_chosen = m_event->id;
    Q_EMIT changed();
    return AgendaRows::line(*m_event);
}

void CalendarPageModel::endEditing()
{
    m_edited.reset();
    report({});
}

void CalendarPageModel::remove()
{
    if (!canEdit())
        return;
    m_change.reset();
    const QString id = m_event->id;
    m_chosen.clear();
    m_edited.reset();
    ActivityCenter &activity = m_services.activity;
    m_calendar.removeLater(id, [&activity, &scheduler = m_services.scheduler](const QString &why) {
        activity.post(ActivityEvent::make(scheduler.now(), QStringLiteral("calendar"),
                                          QStringLiteral("O compromisso não foi removido"),
                                          FeedbackStyle::error, QStringLiteral("calendar"), why));
    });
}

void CalendarPageModel::undo()
{
    if (m_calendar.undoRemoval() || !m_change)
        return;
    const CalendarEvent before = m_change->before;
    m_change.reset();
    m_calendar.update(before.id, before.title, before.start, before.duration(),
                      [page = QPointer(this)](const std::optional<QString> &why) {
                          if (page)
                              page->report(why.value_or(QString()));
                      });
    Q_EMIT changed();
}

/// At the event's day where the application can be told, by an address.
void CalendarPageModel::openApplication()
{
    Applications &applications = m_services.applications;
    const Date date = m_event ? m_event->start : m_services.scheduler.now();
    try {
        if (applications.handlerOf(QStringLiteral("x-scheme-handler/calendar")))
            m_services.fileViewer.open(
                QUrl(QStringLiteral("calendar:///?startdate=") +
                     localDateTime(date).toUTC().toString(QStringLiteral("yyyyMMdd'T'HHmmss'Z'"))));
        else if (const auto id = applications.handlerOf(QStringLiteral("text/calendar")))
            applications.launch(*id);
        else
            report(QStringLiteral("Este ambiente não tem um aplicativo de agenda."));
    } catch (const LocalizedError &error) {
        report(error.description());
    }
}

void CalendarPageModel::openAccounts()
{
    try {
        m_services.permissions.openSettings(PermissionKind::calendar);
    } catch (const LocalizedError &error) {
        report(error.description());
    }
}

void CalendarPageModel::openFeeds()
{
    m_panel.openSettings(SettingsPane::modules);
}

} // namespace velmo
