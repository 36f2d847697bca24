#pragma once

#include "VelmoCore/Calendar/CalendarEvent.h"

#include <QByteArray>

#include <boost/describe.hpp>

#include <optional>
#include <vector>

namespace velmo {

/// A calendar of the desktop's store.
struct StoredCalendar {
    QString id;
    QString title;
    CalendarColor color;
    bool canEdit = false;
    QString address; ///< of its account, in which invitations are answered; empty where unknown

    bool operator==(const StoredCalendar &) const = default;
};
BOOST_DESCRIBE_STRUCT(StoredCalendar, (), (id, title, color, canEdit, address))

/// An event of the store: all VEVENTs of one UID, the series before its exceptions.
struct StoredEvent {
    QString calendar; ///< its id
    QString uid;
    QByteArray text; ///< UTF-8

    bool operator==(const StoredEvent &) const = default;
};
BOOST_DESCRIBE_STRUCT(StoredEvent, (), (calendar, uid, text))

namespace StoredEvents {

/// What an event's identifier stands for.
struct Identity {
    QString calendar;
    QString uid;
    /// Of a series: the start that the series gives the occurrence.
    std::optional<Date> occurrence;

    bool operator==(const Identity &) const = default;
};

/// "store:{calendar}:{uid}" and for an occurrence ":{its original start in seconds since 1970}".
QString identifier(const Identity &identity);
std::optional<Identity> identity(const QString &identifier);

/// The RECURRENCE-ID of an occurrence, in the form of the series' DTSTART. Empty where the series
/// can't be read.
QString recurrenceID(const StoredEvent &series, Date occurrence);

/// What takes place between the two, in no order. Left out is what the calendar's own account has
/// declined.
std::vector<CalendarEvent> events(const std::vector<StoredCalendar> &calendars,
                                  const std::vector<StoredEvent> &stored, Date from, Date to);

} // namespace StoredEvents

} // namespace velmo
