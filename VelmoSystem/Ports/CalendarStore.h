#pragma once

#include "VelmoCore/Calendar/StoredEvents.h"
#include "VelmoCore/Foundation/LocalizedError.h"

#include <QObject>

#include <functional>
#include <optional>
#include <vector>

namespace velmo {

/// The desktop's calendars. Never waits: what it answers, it answers later, on the main thread.
class CalendarStore : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    enum class State {
        unknown, ///< nobody has looked yet
        absent,  ///< the desktop has no store
        present,
        failing, ///< it doesn't answer; it is asked again
    };
    /// The store's words where it refused.
    using Done = std::function<void(const std::optional<QString> &problem)>;

    virtual State state() const = 0;
    /// Looks for the store and follows it from then on. Only the first call does something.
    virtual void start() = 0;
    /// Which time `events` is to cover; it says `changed` when it does.
    virtual void watch(Date from, Date to) = 0;

    /// Those that the user has switched on.
    virtual const std::vector<StoredCalendar> &calendars() const = 0;
    /// The calendar for new events; empty without one.
    virtual QString defaultCalendar() const = 0;
    /// All that takes place in the watched time, by calendar and UID.
    virtual std::vector<StoredEvent> events() const = 0;

    /// `component` is a VEVENT.
    virtual void create(const QString &calendar, const QByteArray &component, Done done) = 0;
    /// The VEVENT of one occurrence, or the one of the series or the single event.
    virtual void modify(const QString &calendar, const QByteArray &component, Done done) = 0;
    /// The one occurrence that `recurrence` names (a RECURRENCE-ID), or the event with all of its
    /// occurrences.
    virtual void remove(const QString &calendar, const QString &uid,
                        const std::optional<QString> &recurrence, Done done) = 0;

Q_SIGNALS:
    /// Its state, its calendars or their events.
    void changed();
};

} // namespace velmo
