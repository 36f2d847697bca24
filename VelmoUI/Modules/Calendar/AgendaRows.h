#pragma once

#include "VelmoCore/Calendar/CalendarDays.h"

#include <QColor>
#include <QString>

#include <boost/describe.hpp>

#include <vector>

namespace velmo {

/// A place in the columns of the agenda: a day's heading, an event, or nothing.
struct AgendaRow {
    QString id; ///< "2026-11-23" for a day, that and the event's for an event
    QString event;
    QString title;
    QString time; ///< "12:30–13:30", "dia inteiro"
    QString place;
    QColor color;
    bool isHeading = false;
    bool isSpace = false;
    bool isNow = false;
    bool isOver = false;
    bool isSelected = false;
    QString spoken; ///< for screen readers

    bool operator==(const AgendaRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(AgendaRow, (),
                      (id, event, title, time, place, color, isHeading, isSpace, isNow, isOver,
                       isSelected, spoken))

/// A day of the month at a glance.
struct MonthDayRow {
    QString id; ///< "2026-11-23"
    int number = 0;
    bool isInMonth = false;
    bool isToday = false;
    bool isSelected = false;
    bool hasEvents = false;
    QString spoken;

    bool operator==(const MonthDayRow &) const = default;
};
BOOST_DESCRIBE_STRUCT(MonthDayRow, (),
                      (id, number, isInMonth, isToday, isSelected, hasEvents, spoken))

/// How the calendar's page words and lays out events.
namespace AgendaRows {

/// The days in columns of `perColumn` rows, each day at the top of one. `selected` is an event.
std::vector<AgendaRow> columns(const std::vector<CalendarDays::Day> &days, int perColumn,
                               const QString &selected, Date now);

std::vector<MonthDayRow> month(const std::vector<CalendarDays::Week> &weeks, QDate today,
                               QDate selected);

/// "hoje", "amanhã", "quarta-feira, 25 de novembro".
QString day(QDate day, QDate today);
/// "hoje, 12:30–13:30", "amanhã, dia inteiro", "25 nov. a 27 nov.".
QString when(const CalendarEvent &event, Date now);
/// "em 25 min", "em 3 h 10 min", "agora, até 13:30"; empty for what is over.
QString countdown(const CalendarEvent &event, Date now);
/// The line that describes the event as a user would type it.
QString line(const CalendarEvent &event);

} // namespace AgendaRows

} // namespace velmo
