#include "VelmoUI/Modules/Calendar/AgendaRows.h"

#include "VelmoCore/Foundation/Words.h"

#include <QLocale>

#include <algorithm>
#include <cmath>

namespace velmo {

namespace {

QDate dayOf(Date date)
{
    return localDateTime(date).date();
}

QString span(Date start, Date end)
{
    const QString from = Words::time(start);
    return start == end ? from : from + u'–' + Words::time(end);
}

QString allDay()
{
    return QStringLiteral("dia inteiro");
}

QString capital(QString text)
{
    if (!text.isEmpty())
        text[0] = text[0].toUpper();
    return text;
}

AgendaRow rowOf(const CalendarDays::Part &part, const QString &day, const QString &selected,
                Date now)
{
    const CalendarEvent &event = part.event;
    AgendaRow row{
        .id = day + u' ' + event.id,
        .event = event.id,
        .title = event.title,
        .time = part.isWholeDay ? allDay() : span(part.start, part.end),
        .place = event.location.value_or(QString()),
        .color = QColor::fromRgbF(float(event.color.r), float(event.color.g), float(event.color.b)),
        .isNow = !part.isWholeDay && event.isHappening(now),
        .isOver = event.end <= now,
        .isSelected = event.id == selected};
    QStringList words{row.title, row.time};
    if (!row.place.isEmpty())
        words << row.place;
    words << event.calendarTitle;
    row.spoken = words.join(QStringLiteral(", "));
    return row;
}

} // namespace

std::vector<AgendaRow> AgendaRows::columns(const std::vector<CalendarDays::Day> &days,
                                           int perColumn, const QString &selected, Date now)
{
    std::vector<AgendaRow> rows;
    const auto space = [&](const QString &day) {
        rows.push_back({.id = day + u' ' + QString::number(rows.size()), .isSpace = true});
    };
    const auto isColumnStart = [&] { return rows.size() % std::size_t(perColumn) == 0; };
    for (const CalendarDays::Day &day : days) {
        const QString id = day.date.toString(Qt::ISODate);
        const QString title = capital(AgendaRows::day(day.date, dayOf(now)));
        rows.push_back({.id = id, .title = title, .isHeading = true, .spoken = title});
        for (const CalendarDays::Part &part : day.parts) {
            if (isColumnStart() && perColumn > 1)
                space(id); // in line with the rows under the heading
            rows.push_back(rowOf(part, id, selected, now));
        }
        while (!isColumnStart())
            space(id);
    }
    return rows;
}

std::vector<MonthDayRow> AgendaRows::month(const std::vector<CalendarDays::Week> &weeks,
                                           QDate today, QDate selected)
{
    std::vector<MonthDayRow> rows;
    for (const CalendarDays::Week &week : weeks) {
        for (const CalendarDays::MonthDay &day : week) {
            QString spoken = Words::longDay(day.date);
            if (day.hasEvents)
                spoken += QStringLiteral(", com compromissos");
            rows.push_back({.id = day.date.toString(Qt::ISODate),
                            .number = day.date.day(),
                            .isInMonth = day.isInMonth,
                            .isToday = day.date == today,
                            .isSelected = day.date == selected,
                            .hasEvents = day.hasEvents,
                            .spoken = spoken});
        }
    }
    return rows;
}

QString AgendaRows::day(QDate day, QDate today)
{
    if (day == today)
        return QStringLiteral("hoje");
    if (day == today.addDays(1))
        return QStringLiteral("amanhã");
    if (day == today.addDays(-1))
        return QStringLiteral("ontem");
    return Words::longDay(day);
}

QString AgendaRows::when(const CalendarEvent &event, Date now)
{
    const QDate first = dayOf(event.start);
    // An all-day event ends with the midnight after its last day.
    const QDate last = std::max(first, dayOf(event.isAllDay ? event.end - 1s : event.end));
    const QDate today = dayOf(now);
    if (first != last) {
        const auto moment = [&](QDate day, Date time) {
            return event.isAllDay ? Words::day(day)
                                  : Words::day(day) + QStringLiteral(", ") + Words::time(time);
        };
        return QStringLiteral("%1 a %2").arg(moment(first, event.start), moment(last, event.end));
    }
    return AgendaRows::day(first, today) + QStringLiteral(", ") +
           (event.isAllDay ? allDay() : span(event.start, event.end));
}

QString AgendaRows::countdown(const CalendarEvent &event, Date now)
{
    if (event.end <= now && event.start < now)
        return {};
    if (event.isAllDay)
        return event.start <= now ? QStringLiteral("hoje") : QString();
    if (event.isHappening(now))
        return QStringLiteral("agora, até %1").arg(Words::time(event.end));
    const double seconds = (event.start - now).count();
    if (seconds >= 86'400)
        return {};
    return QStringLiteral("em %1").arg(Words::duration(int(std::ceil(seconds / 60))));
}

QString AgendaRows::line(const CalendarEvent &event)
{
    if (event.isAllDay)
        return event.title;
    const QDateTime start = localDateTime(event.start);
    const auto clock = [](const QDateTime &time) { return time.toString(QStringLiteral("HH:mm")); };
    const QString length =
        event.duration() < 24h
            ? u'-' + clock(localDateTime(event.end))
            : QStringLiteral(" %1h").arg(std::lround(event.duration().count() / 3600));
    return QStringLiteral("%1 %2 %3%4")
        .arg(event.title, start.toString(QStringLiteral("dd/MM/yyyy")), clock(start), length);
}

} // namespace velmo
