#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Ports/CalendarStore.h"

#include <utility>

namespace velmo {

/// Calendars as the test sets them. What is asked of them is written down and answered when the
/// scheduler runs what was posted; nothing changes by it.
class FakeCalendarStore : public CalendarStore {
public:
    explicit FakeCalendarStore(Scheduler &scheduler) : m_scheduler(scheduler) {}

    struct Written {
        QString calendar;
        QByteArray component;
    };
    struct Removed {
        QString calendar;
        QString uid;
        std::optional<QString> recurrence;
    };

    State state() const override { return current; }
    void start() override { ++starts; }
    void watch(Date from, Date to) override { windows.emplace_back(from, to); }
    const std::vector<StoredCalendar> &calendars() const override { return list; }
    QString defaultCalendar() const override { return preferred; }
    std::vector<StoredEvent> events() const override { return stored; }

    void create(const QString &calendar, const QByteArray &component, Done done) override
    {
        created.push_back({calendar, component});
        answer(std::move(done));
    }
    void modify(const QString &calendar, const QByteArray &component, Done done) override
    {
        modified.push_back({calendar, component});
        answer(std::move(done));
    }
    void remove(const QString &calendar, const QString &uid,
                const std::optional<QString> &recurrence, Done done) override
    {
        removed.push_back({calendar, uid, recurrence});
        answer(std::move(done));
    }

    /// Shows these.
    void set(std::vector<StoredCalendar> calendars, std::vector<StoredEvent> events)
    {
        current = State::present;
        list = std::move(calendars);
        stored = std::move(events);
        if (preferred.isEmpty() && !list.empty())
            preferred = list.front().id;
        Q_EMIT changed();
    }
    void setState(State state)
    {
        current = state;
        Q_EMIT changed();
    }

    State current = State::absent;
    std::vector<StoredCalendar> list;
    std::vector<StoredEvent> stored;
    QString preferred;
    std::optional<QString> problem; ///< what edits are answered with
    int starts = 0;
    std::vector<std::pair<Date, Date>> windows;
    std::vector<Written> created;
    std::vector<Written> modified;
    std::vector<Removed> removed;

private:
    void answer(Done done)
    {
        m_scheduler.post([done = std::move(done), problem = problem] { done(problem); });
    }

    Scheduler &m_scheduler;
};

} // namespace velmo
