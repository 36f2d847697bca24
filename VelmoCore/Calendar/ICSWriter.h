#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QByteArray>
#include <QString>

#include <optional>

/// Writes what a user changes in the events of a calendar's store (RFC 5545). A component is the
/// VEVENTs of one UID, with or without a VCALENDAR around them, in UTF-8 as the store gave it. All
/// that isn't changed stays byte for byte, alarms, attendees and unknown properties as well; only
/// lines all end with CR LF, and what is written counts as a new revision (SEQUENCE, DTSTAMP,
/// LAST-MODIFIED).
///
/// Times keep their kind: the wall clock of a TZID, UTC, floating, or days. What a TZID can't say,
/// because nobody knows it or the clock shows that time twice, is written in UTC. An all-day event
/// has its days in the machine's zone, as `ICSParser` reads them.
///
/// Absent where the component has no such event, its start can't be read, or a time is none of the
/// years 1 to 9999. `now` is the time of the change.
namespace velmo::ICSWriter {

/// What is absent stays. Seconds are whole ones, an all-day event has one day or more.
struct EventChange {
    std::optional<QString> title;
    std::optional<Date> start;
    std::optional<Seconds> duration;
};

/// A new VEVENT. Its times are in UTC: every client knows them, while a TZID asks for a VTIMEZONE
/// with all rules of the zone beside it, and the event takes place but once. No time at all for a
/// length below a second.
std::optional<QByteArray> created(const QString &uid, const QString &title, Date start,
                                  Seconds duration, Date now);

/// The component with its event changed: of several the one that stands for the series. A series
/// keeps its start, on which its rule and its exceptions hang: absent for another.
std::optional<QByteArray> changed(const QByteArray &component, const EventChange &change, Date now);

/// The VEVENT that takes the place of one occurrence of a series, which `occurrence` names by the
/// start that the series gives it; the one that already does, changed, where the component has it.
/// Absent if the event is no series, or if its TZID can't say that start.
std::optional<QByteArray> overridden(const QByteArray &component, Date occurrence,
                                     const EventChange &change, Date now);

/// The component without that occurrence (EXDATE). Absent as above.
std::optional<QByteArray> excluded(const QByteArray &component, Date occurrence, Date now);

} // namespace velmo::ICSWriter
