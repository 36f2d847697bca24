#pragma once

#include "VelmoCore/Permissions/PermissionStatus.h"
#include "VelmoCore/Storage/StateFile.h"
#include "VelmoSystem/Calendar/CalendarReader.h"
#include "VelmoSystem/Ports/CalendarStore.h"
#include "VelmoSystem/Ports/Downloader.h"
#include "VelmoSystem/Ports/Workspace.h"

#include <QObject>
#include <QThreadPool>

#include <set>

namespace velmo {

/// What is coming, from the desktop's calendars and from feeds. Events are in memory only, the
/// feeds' addresses in a file. Main thread only.
class CalendarService : public QObject {
    Q_OBJECT

public:
    /// How far ahead `upcoming` looks, from today's beginning.
    static constexpr Seconds upcomingTime = 1'296'000s;
    /// How long a removal can be taken back.
    static constexpr Seconds undoTime = 5s;

    /// What the user reads of a failure; nothing where it went well.
    using Finished = std::function<void(const std::optional<QString> &problem)>;
    using Found = std::function<void(const std::vector<CalendarEvent> &)>;

    /// Loads the feeds' addresses. Without a `path` they are in memory only.
    CalendarService(const std::optional<QString> &path, const DataFiles &files,
                    Scheduler &scheduler, CalendarStore &store, Downloader &downloader,
                    Workspace &workspace);
    ~CalendarService() override;

    /// Follows the store and gets the feeds every ten minutes.
    void start();
    /// Reads again what is known.
    void refresh();
    /// Gets all feeds now.
    void reloadSubscriptions();

    /// Whether there is anything to show events of.
    bool isConnected() const;
    /// To the desktop's calendars: granted, where the desktop has some.
    PermissionStatus access() const;
    const std::vector<CalendarEvent> &upcoming() const { return m_upcoming; }
    /// The first that isn't all-day and begins after `date`; null for none.
    const CalendarEvent *nextEvent(Date date) const;
    /// The first that isn't all-day and is on; null for none.
    const CalendarEvent *currentEvent(Date date) const;
    /// Of the upcoming ones; null for none.
    const CalendarEvent *find(const QString &id) const;
    /// Answers later with all between the two, by start.
    void events(Date from, Date to, Found found);

    const std::vector<CalendarSubscription> &subscriptions() const { return m_subscriptions; }
    /// Why the feed couldn't be had the last time.
    std::optional<QString> subscriptionError(const Uuid &id) const;
    /// Tries the address first. An empty `name` is the feed's own.
    void addSubscription(const QString &urlText, const QString &name, Finished finished);
    void renameSubscription(const Uuid &id, const QString &name);
    void removeSubscription(const Uuid &id);

    /// Empty without a calendar for new events.
    QString defaultCalendarName() const;
    void create(const QString &title, Date start, Seconds duration, Finished finished);
    /// Of a series the one occurrence.
    void update(const QString &id, const QString &title, Date start, Seconds duration,
                Finished finished);
    /// At once.
    void remove(const QString &id, Finished finished);
    /// Hides it at once and removes it in a while, in which `undoRemoval` brings it back. `failed`
    /// hears of a failure only.
    void removeLater(const QString &id, std::function<void(const QString &problem)> failed);
    bool undoRemoval();
    /// Of the event that `undoRemoval` brings back; empty without.
    QString removedTitle() const { return m_removal ? m_removal->title : QString(); }
    /// Removes for good what could come back.
    void finishRemoval();

Q_SIGNALS:
    /// The events, the feeds, or how they stand.
    void changed();

private:
    struct Removal {
        QString id;
        QString title;
        std::function<void(const QString &problem)> failed;
        ScheduledTask end;
    };

    struct Window {
        Date from;
        Date to;

        bool operator==(const Window &) const = default;
    };

    Window upcomingWindow() const;
    void watch();
    void read(Date from, Date to, Found found);
    void startFeeds();
    void load(std::size_t index);
    void loaded(const Uuid &id, const Downloader::Result &result);
    void keep(const CalendarSubscription &subscription, const Downloader::Result &result);
    CalendarFeed *feed(const Uuid &id);
    std::optional<StoredEvent> stored(const StoredEvents::Identity &identity) const;
    const StoredCalendar *calendar(const QString &id) const;
    /// The event to change; says what is wrong with it instead.
    std::optional<StoredEvents::Identity> editable(const QString &id, const Finished &finished);

    Scheduler &m_scheduler;
    CalendarStore &m_store;
    Downloader &m_downloader;
    Workspace &m_workspace;
    std::vector<CalendarSubscription> m_subscriptions;
    StateFile<std::vector<CalendarSubscription>> m_file;
    std::vector<CalendarFeed> m_feeds; ///< those that were had once
    std::map<Uuid, Downloader::Validators> m_validators;
    std::map<Uuid, QString> m_errors;
    std::vector<CalendarEvent> m_upcoming;
    std::set<QString> m_hidden;     ///< ids of those that are being removed, or were
    std::optional<Window> m_looked; ///< at last, beside what is coming
    std::optional<Window> m_watched;
    std::optional<Removal> m_removal;
    int m_revision = 0;
    bool m_isStarted = false;
    bool m_isReading = false;
    bool m_readsAgain = false;
    std::shared_ptr<void> m_download;
    std::map<int, std::shared_ptr<void>> m_trials; ///< of addresses that are to be added
    int m_trialCount = 0;
    ScheduledTask m_nextLoad;
    ScheduledTask m_midnight;
    std::shared_ptr<CalendarReader> m_reader; ///< of the reading thread
    QThreadPool m_thread;
    std::shared_ptr<int> m_alive = std::make_shared<int>();
};

} // namespace velmo
