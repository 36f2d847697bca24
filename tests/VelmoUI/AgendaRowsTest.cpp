#include "VelmoUI/Modules/Calendar/AgendaRows.h"

#include "VelmoCore/Calendar/EventLine.h"

#include "tests/support/Printers.h"

#include <QLocale>

#include <gtest/gtest.h>

namespace velmo {
namespace {

const QDate monday(2026, 11, 23);

Date at(const QDate &day, int hour, int minute = 0)
{
    return Date(
        Seconds(double(day.startOfDay().addSecs(60 * (60 * hour + minute)).toSecsSinceEpoch())));
}

CalendarEvent event(const QString &title, Date start, Seconds duration, bool isAllDay = false)
{
    return {.id = title,
            .title = title,
            .start = start,
            .end = start + duration,
            .isAllDay = isAllDay,
            .calendarTitle = "Pessoal"};
}

struct AgendaRowsTest : testing::Test {
    AgendaRowsTest() { QLocale::setDefault(QLocale(QLocale::Portuguese, QLocale::Brazil)); }
    ~AgendaRowsTest() override { QLocale::setDefault(QLocale::C); }
};

TEST_F(AgendaRowsTest, StartEachDayAtTheTopOfAColumn)
{
    const Date now = at(monday, 10);
    const std::vector events{event("Ontem e hoje", at(monday, -2), 13h),
                             event("A", at(monday, 9), 2h), event("B", at(monday, 12), 1h),
                             event("C", at(monday, 14), 0s),
                             event("D", at(monday.addDays(2), 9), 24h)};
    const auto days =
        CalendarDays::list(events, monday, monday.addDays(3), QTimeZone::systemTimeZone());
    QStringList titles;
    for (const AgendaRow &row : AgendaRows::columns(days, 3, "B", now)) {
        titles << (row.isSpace ? "-" : row.title);
        EXPECT_EQ(row.isSelected, row.title == "B");
        EXPECT_EQ(row.isNow, row.title == "A" || row.title == "Ontem e hoje");
    }
    EXPECT_EQ(titles, (QStringList{"Hoje", "Ontem e hoje", "A", "-", "B", "C",
                                   "Quarta-feira, 25 de novembro", "D", "-",
                                   "Quinta-feira, 26 de novembro", "D", "-"}));
}

TEST_F(AgendaRowsTest, WordsTimesAsThePageReads)
{
    const Date now = at(monday, 10);
    const CalendarEvent lunch = event("Almoço", at(monday, 12, 30), 1h);
    const CalendarEvent trip = event("Viagem", at(monday.addDays(1), 0), 72h, true);
    const CalendarEvent holiday = event("Feriado", at(monday.addDays(1), 0), 24h, true);
    const CalendarEvent night = event("Festa", at(monday, 22), 5h);
    const std::tuple<CalendarEvent, const char *, const char *> cases[] = {
        {lunch, "hoje, 12:30–13:30", "em 2 h 30 min"},
        {holiday, "amanhã, dia inteiro", ""},
        {trip, "24 nov. a 26 nov.", ""},
        {night, "23 nov., 22:00 a 24 nov., 03:00", "em 12 h"},
        {event("Já", at(monday, 9, 30), 45min), "hoje, 09:30–10:15", "agora, até 10:15"},
        {event("Foi", at(monday, 8), 1h), "hoje, 08:00–09:00", ""},
    };
    for (const auto &[one, when, countdown] : cases) {
        EXPECT_EQ(AgendaRows::when(one, now), when);
        EXPECT_EQ(AgendaRows::countdown(one, now), countdown) << one.title.toStdString();
    }
    EXPECT_EQ(AgendaRows::countdown(lunch, lunch.start - 1s), "em 1 min");
}

TEST_F(AgendaRowsTest, DescribeAnEventAsItsLineReads)
{
    const Date now = at(monday, 10);
    for (const CalendarEvent &one :
         {event("Almoço com Ana", at(monday.addDays(9), 12, 30), 90min),
          event("Festa", at(monday, 22), 5h), event("Aula 3", at(monday.addDays(-40), 7), 45min)}) {
        const auto read = EventLines::read(AgendaRows::line(one), now);
        EXPECT_EQ(std::get<EventLine>(read), (EventLine{one.title, one.start, one.duration()}))
            << AgendaRows::line(one).toStdString();
    }
}

} // namespace
} // namespace velmo
