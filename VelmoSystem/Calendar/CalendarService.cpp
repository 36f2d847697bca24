#include "VelmoSystem/Calendar/CalendarService.h"

#include "VelmoCore/Calendar/ICSParser.h"
#include "VelmoCore/Calendar/ICSWriter.h"
#include "VelmoSystem/Calendar/CalendarError.h"

#include <algorithm>

namespace velmo {

namespace {

constexpr Seconds feedPause = 600s;

Date startOfDay(const QDate &day)
{
    return Date(Seconds(double(day.startOfDay().toSecsSinceEpoch())));
}

bool isCalendar(const QByteArray &text)
{
    return text.contains("BEGIN:VCALENDAR");
}

/// Why a feed couldn't be had.
std::optional<QString> problem(const Downloader::Result &result)
{
    using enum Downloader::Result::Kind;
    switch (result.kind) {
    case body:
        return isCalendar(result.body) ? std::nullopt
                                       : std::optional(CalendarError::notACalendar());
    case unchanged:
        return std::nullopt;
    case refused:
        return CalendarError::status(result.status);
    case failed:
        return result.problem;
    }
    return std::nullopt;
}

QString nameOf(const QString &wanted, const std::optional<QString> &own, const QUrl &url)
{
    if (!wanted.isEmpty())
        return wanted;
    if (own)
        return *own;
    if (url.host().contains(u"google"))
        return QStringLiteral("Google Agenda");
    return url.host().isEmpty() ? QStringLiteral("Agenda") : url.host();
}

} // namespace

CalendarService::CalendarService(const std::optional<QString> &path, const DataFiles &files,
                                 Scheduler &scheduler, CalendarStore &store, Downloader &downloader,
                                 Workspace &workspace)
    : m_scheduler(scheduler), m_store(store), m_downloader(downloader), m_workspace(workspace),
      m_file(path, files, scheduler, {QStringLiteral("Agenda")},
             [this] { return m_subscriptions; }),
      m_reader(std::make_shared<CalendarReader>())
{
    m_thread.setMaxThreadCount(1);
    m_file.load([this](std::vector<CalendarSubscription> kept) {
        for (CalendarSubscription &subscription : kept)
            m_subscriptions.push_back(std::move(subscription));
        Q_EMIT changed();
        if (m_isStarted)
            startFeeds();
    });
}

CalendarService::~CalendarService()
{
    m_thread.waitForDone();
}

void CalendarService::start()
{
    if (std::exchange(m_isStarted, true))
        return;
    connect(&m_store, &CalendarStore::changed, this, &CalendarService::refresh);
    connect(&m_workspace, &Workspace::didWake, this, &CalendarService::reloadSubscriptions);
    refresh(); // says what the store is to cover before it is looked for
    m_store.start();
    startFeeds();
}

bool CalendarService::isConnected() const
{
    return access() == PermissionStatus{PermissionStatus::Granted()} || !m_subscriptions.empty();
}

PermissionStatus CalendarService::access() const
{
    switch (m_store.state()) {
    case CalendarStore::State::unknown:
        return {PermissionStatus::NotDetermined()};
    case CalendarStore::State::absent:
        return {PermissionStatus::NotGranted()};
    case CalendarStore::State::present:
        return {PermissionStatus::Granted()};
    case CalendarStore::State::failing:
        return {PermissionStatus::Partial{
            QStringLiteral("Os calendários do sistema não respondem. Tentando de novo…")}};
    }
    return {};
}

void CalendarService::refresh()
{
    if (m_isReading) {
        m_readsAgain = true;
        return;
    }
    watch();
    m_isReading = true;
    const auto [from, to] = upcomingWindow();
    read(from, to, [this](const std::vector<CalendarEvent> &events) {
        m_isReading = false;
        m_upcoming = events;
        Q_EMIT changed();
        if (std::exchange(m_readsAgain, false))
            refresh();
    });
}

CalendarService::Window CalendarService::upcomingWindow() const
{
    const Date today = startOfDay(localDateTime(m_scheduler.now()).date());
    return {today, today + upcomingTime};
}

/// Tells the store which time is of interest, as long as the day is the same.
void CalendarService::watch()
{
    const QDate tomorrow = localDateTime(m_scheduler.now()).date().addDays(1);
    m_midnight = m_scheduler.at(startOfDay(tomorrow), [this] { refresh(); });
    Window window = upcomingWindow();
    if (m_looked)
        window = {std::min(window.from, m_looked->from), std::max(window.to, m_looked->to)};
    if (std::exchange(m_watched, window) != window)
        m_store.watch(window.from, window.to);
}

void CalendarService::events(Date from, Date to, Found found)
{
    m_looked = Window{from, to};
    watch();
    read(from, to, std::move(found));
}

void CalendarService::read(Date from, Date to, Found found)
{
    m_thread.start([reader = m_reader,
                    sources = CalendarSources{m_store.calendars(), m_store.events(), m_feeds}, from,
                    to, &scheduler = m_scheduler, found = std::move(found), this,
                    alive = std::weak_ptr(m_alive)] {
        scheduler.post([events = reader->events(sources, from, to), found, this, alive]() mutable {
            if (alive.expired())
                return;
            std::erase_if(
                events, [this](const CalendarEvent &event) { return m_hidden.contains(event.id); });
            found(events);
        });
    });
}

const CalendarEvent *CalendarService::nextEvent(Date date) const
{
    const auto next = std::ranges::find_if(m_upcoming, [&](const CalendarEvent &event) {
        return !event.isAllDay && event.start > date;
    });
    return next == m_upcoming.end() ? nullptr : &*next;
}

const CalendarEvent *CalendarService::currentEvent(Date date) const
{
    const auto current = std::ranges::find_if(m_upcoming, [&](const CalendarEvent &event) {
        return !event.isAllDay && event.isHappening(date);
    });
    return current == m_upcoming.end() ? nullptr : &*current;
}

const CalendarEvent *CalendarService::find(const QString &id) const
{
    const auto event = std::ranges::find(m_upcoming, id, &CalendarEvent::id);
    return event == m_upcoming.end() ? nullptr : &*event;
}

void CalendarService::startFeeds()
{
    if (!m_subscriptions.empty())
        reloadSubscriptions();
}

void CalendarService::reloadSubscriptions()
{
    m_nextLoad.cancel();
    m_download.reset();
    load(0);
}

/// One after the other.
void CalendarService::load(std::size_t index)
{
    if (index >= m_subscriptions.size()) {
        if (!m_subscriptions.empty())
            m_nextLoad = m_scheduler.after(feedPause, [this] { reloadSubscriptions(); });
        return;
    }
    const CalendarSubscription &subscription = m_subscriptions[index];
    const auto known = m_validators.find(subscription.id);
    m_download = m_downloader.get(
        {.url = subscription.url,
         .accept = "text/calendar",
         .known = known == m_validators.end() ? Downloader::Validators() : known->second},
        [this, index, id = subscription.id](const Downloader::Result &result) {
            loaded(id, result);
            load(index + 1);
        });
}

void CalendarService::loaded(const Uuid &id, const Downloader::Result &result)
{
    const auto subscription = std::ranges::find(m_subscriptions, id, &CalendarSubscription::id);
    if (subscription == m_subscriptions.end())
        return;
    if (const auto why = problem(result)) {
        m_errors[id] = *why;
        Q_EMIT changed();
        return;
    }
    const bool isMended = m_errors.erase(id) > 0;
    if (result.kind == Downloader::Result::Kind::body)
        keep(*subscription, result);
    else if (isMended)
        Q_EMIT changed();
}

void CalendarService::keep(const CalendarSubscription &subscription,
                           const Downloader::Result &result)
{
    m_validators[subscription.id] = result.validators;
    CalendarFeed *known = feed(subscription.id);
    if (known && known->text == result.body)
        return;
    if (!known)
        known = &m_feeds.emplace_back(CalendarFeed{subscription, {}, 0});
    known->text = result.body;
    known->revision = ++m_revision;
    refresh();
}

CalendarFeed *CalendarService::feed(const Uuid &id)
{
    const auto feed = std::ranges::find_if(
        m_feeds, [&](const CalendarFeed &one) { return one.subscription.id == id; });
    return feed == m_feeds.end() ? nullptr : &*feed;
}

std::optional<QString> CalendarService::subscriptionError(const Uuid &id) const
{
    const auto error = m_errors.find(id);
    return error == m_errors.end() ? std::nullopt : std::optional(error->second);
}

void CalendarService::addSubscription(const QString &urlText, const QString &name,
                                      Finished finished)
{
    const auto url = CalendarSubscription::normalizedURL(urlText);
    if (!url) {
        finished(CalendarError::invalidURL());
        return;
    }
    const auto answered = [=, this](const Downloader::Result &result) {
        if (const auto why = problem(result)) {
            finished(why);
            return;
        }
        // A feed's name may stand anywhere in it.
        m_thread.start([=, this, &scheduler = m_scheduler, alive = std::weak_ptr(m_alive)] {
            const auto own = ICSParser::calendarName(QString::fromUtf8(result.body));
            scheduler.post([=, this] {
                if (alive.expired())
                    return;
                m_subscriptions.push_back({makeUuid(), nameOf(name.trimmed(), own, *url), *url});
                m_file.save();
                keep(m_subscriptions.back(), result);
                if (!m_nextLoad.isPending())
                    m_nextLoad = m_scheduler.after(feedPause, [this] { reloadSubscriptions(); });
                finished(std::nullopt);
            });
        });
    };
    const int trial = ++m_trialCount;
    m_trials[trial] = m_downloader.get({.url = *url, .accept = "text/calendar", .known = {}},
                                       [this, trial, answered](const auto &result) {
                                           const auto ended = m_trials.extract(trial);
                                           answered(result);
                                       });
}

void CalendarService::renameSubscription(const Uuid &id, const QString &name)
{
    const auto subscription = std::ranges::find(m_subscriptions, id, &CalendarSubscription::id);
    if (subscription == m_subscriptions.end() || name.trimmed().isEmpty())
        return;
    subscription->name = name.trimmed();
    m_file.save();
    if (CalendarFeed *known = feed(id))
        known->subscription.name = subscription->name;
    refresh();
}

void CalendarService::removeSubscription(const Uuid &id)
{
    if (std::erase_if(m_subscriptions, [&](const auto &one) { return one.id == id; }) == 0)
        return;
    std::erase_if(m_feeds, [&](const auto &one) { return one.subscription.id == id; });
    m_errors.erase(id);
    m_validators.erase(id);
    m_file.save();
    if (m_subscriptions.empty()) {
        m_nextLoad.cancel();
        m_download.reset();
    }
    refresh();
}

QString CalendarService::defaultCalendarName() const
{
    const StoredCalendar *found = calendar(m_store.defaultCalendar());
    return found ? found->title : QString();
}

void CalendarService::create(const QString &title, Date start, Seconds duration, Finished finished)
{
    const StoredCalendar *found = calendar(m_store.defaultCalendar());
    if (!found || !found->canEdit) {
        finished(CalendarError::noCalendar());
        return;
    }
    const QString uid = uuidText(makeUuid()).toLower();
    if (const auto made = ICSWriter::created(uid, title, start, duration, m_scheduler.now()))
        m_store.create(found->id, *made, std::move(finished));
    else
        finished(CalendarError::notChangeable());
}

void CalendarService::update(const QString &id, const QString &title, Date start, Seconds duration,
                             Finished finished)
{
    const auto identity = editable(id, finished);
    if (!identity)
        return;
    const ICSWriter::EventChange change{title, start, duration};
    const QByteArray text = stored(*identity)->text;
    const Date now = m_scheduler.now();
    const auto component = identity->occurrence
                               ? ICSWriter::overridden(text, *identity->occurrence, change, now)
                               : ICSWriter::changed(text, change, now);
    if (component)
        m_store.modify(identity->calendar, *component, std::move(finished));
    else
        finished(CalendarError::notChangeable());
}

void CalendarService::remove(const QString &id, Finished finished)
{
    const auto identity = editable(id, finished);
    if (!identity)
        return;
    std::optional<QString> recurrence;
    if (identity->occurrence)
        recurrence = StoredEvents::recurrenceID(*stored(*identity), *identity->occurrence);
    m_store.remove(identity->calendar, identity->uid, recurrence, std::move(finished));
}

std::optional<StoredEvents::Identity> CalendarService::editable(const QString &id,
                                                                const Finished &finished)
{
    if (id.startsWith(u"ics:")) {
        finished(CalendarError::readOnly());
        return std::nullopt;
    }
    const auto identity = StoredEvents::identity(id);
    const StoredCalendar *found = identity ? calendar(identity->calendar) : nullptr;
    if (!found || !stored(*identity)) {
        finished(CalendarError::notFound());
        return std::nullopt;
    }
    if (!found->canEdit) {
        finished(CalendarError::readOnly());
        return std::nullopt;
    }
    return identity;
}

std::optional<StoredEvent> CalendarService::stored(const StoredEvents::Identity &identity) const
{
    for (StoredEvent &event : m_store.events()) {
        if (event.calendar == identity.calendar && event.uid == identity.uid)
            return std::move(event);
    }
    return std::nullopt;
}

const StoredCalendar *CalendarService::calendar(const QString &id) const
{
    const auto &all = m_store.calendars();
    const auto found = std::ranges::find(all, id, &StoredCalendar::id);
    return found == all.end() ? nullptr : &*found;
}

void CalendarService::removeLater(const QString &id,
                                  std::function<void(const QString &problem)> failed)
{
    finishRemoval();
    const CalendarEvent *event = find(id);
    const Finished refused = [&failed](const auto &why) { failed(*why); };
    if (!editable(id, refused))
        return;
    m_hidden.insert(id);
    m_removal.emplace(Removal{id, event ? event->title : QString(), std::move(failed),
                              m_scheduler.after(undoTime, [this] { finishRemoval(); })});
    std::erase_if(m_upcoming, [&](const CalendarEvent &one) { return one.id == id; });
    Q_EMIT changed();
}

bool CalendarService::undoRemoval()
{
    if (!m_removal)
        return false;
    m_hidden.erase(m_removal->id);
    m_removal.reset();
    refresh();
    return true;
}

void CalendarService::finishRemoval()
{
    if (!m_removal)
        return;
    const QString id = m_removal->id;
    const auto failed = std::move(m_removal->failed);
    m_removal.reset();
    remove(id, [this, id, failed](const std::optional<QString> &why) {
        if (!why)
            return; // it stays hidden until the store says so, too
        m_hidden.erase(id);
        refresh();
        failed(*why);
    });
    Q_EMIT changed();
}

} // namespace velmo
