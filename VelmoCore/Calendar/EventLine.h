#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QString>

#include <boost/describe.hpp>

#include <variant>

namespace velmo {

/// An event as it is created from one line: "Almoço com Ana amanhã 12h30 1h".
struct EventLine {
    QString title;
    Date start;
    Seconds duration;

    bool operator==(const EventLine &) const = default;
};
BOOST_DESCRIBE_STRUCT(EventLine, (), (title, start, duration))

/// What keeps a line from being an event.
enum class EventLineProblem {
    noTitle,
    noStart,
    noTime, ///< a day alone: no calendar takes an all-day event from here
    endsBeforeStart,
    tooLong,
};
BOOST_DESCRIBE_ENUM(EventLineProblem, noTitle, noStart, noTime, endsBeforeStart, tooLong)

/// Reads events that the user types in a line, with accents and capitals or without.
///
/// The day is what reminders take: "amanhã", "sexta", "dia 15", "25/12", "1º de maio". Without one
/// it is today, or tomorrow if the time is over.
///
/// The time: "14:30", "12h30", "às 9", "às 8 da noite", "meio-dia", "à noite", "daqui a 20 min".
///
/// The length: "1h", "1h30", "45 min", "2 horas", "uma hora e meia", "meia hora"; or the end in
/// "12h30-13h30", "das 14h às 15h", "22h até 2h". Without one an hour.
///
/// They may stand anywhere in the line; all other words are the title. Of two that may be a time or
/// a length, as in "14h 1h", the second is the length; with words between them the shorter one. Of
/// several days the one beside the time counts, else the last: "Prova de sexta amanhã 9h" is
/// tomorrow's.
namespace EventLines {

std::variant<EventLine, EventLineProblem> read(const QString &line, Date now);

/// What the user reads of it.
QString description(EventLineProblem problem);

} // namespace EventLines

} // namespace velmo
