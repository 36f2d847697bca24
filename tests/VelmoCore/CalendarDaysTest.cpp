#include "VelmoCore/Calendar/CalendarDays.h"

#include "tests/support/Printers.h"

#include <gmock/gmock.h>

namespace velmo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

const QTimeZone zone("America/Sao_Paulo");

/// From local times "2018-11-03 22:00".
CalendarEvent event(const QString &title, const QString &start, const QString &end,
                    bool isAllDay = false)
{
    const auto date = [](const QString &text) {
        auto local = QDateTime::fromString(text, u"yyyy-MM-dd HH:mm"_qs);
        local.setTimeZone(zone);
        return Date(Seconds(double(local.toSecsSinceEpoch())));
    };
    return {.title = title,
            .start = date(start),
            .end = date(end),
            .isAllDay = isAllDay,
            .location = {},
            .meeting = {}};
}

/// "day: title start-end, …" of each day, "title*" for a whole one.
std::vector<QString> listed(const std::vector<CalendarEvent> &events, QDate first, QDate last)
{
    const auto time = [](Date date) {
        return localDateTime(date).toTimeZone(zone).toString(u"HH:mm"_qs);
    };
    std::vector<QString> lines;
    for (const auto &[date, parts] : CalendarDays::list(events, first, last, zone)) {
        QStringList texts;
        for (const auto &part : parts)
            texts.append(part.event.title + (part.isWholeDay ? u"*"_qs : QString()) + u' ' +
                         time(part.start) + u'-' + time(part.end));
        lines.push_back(date.toString(u"d/M: "_qs) + texts.join(u", "_qs));
    }
    return lines;
}

TEST(CalendarDays, PutsAnEventOnEachDayItTouches)
{
    const QDate first(2018, 11, 1);
    const QDate last(2018, 11, 30);
    EXPECT_THAT(listed({event(u"viagem"_qs, u"2018-10-30 10:00"_qs, u"2018-11-03 00:00"_qs),
                        event(u"aula"_qs, u"2018-11-02 08:00"_qs, u"2018-11-02 09:00"_qs),
                        event(u"feriado"_qs, u"2018-11-02 00:00"_qs, u"2018-11-03 00:00"_qs, true),
                        event(u"lembrete"_qs, u"2018-11-03 00:00"_qs, u"2018-11-03 00:00"_qs),
                        // At midnight before 4 November the clocks went on to 01:00.
                        event(u"festa"_qs, u"2018-11-03 22:00"_qs, u"2018-11-04 04:00"_qs),
                        event(u"longo"_qs, u"2018-11-30 23:00"_qs, u"2099-01-01 00:00"_qs),
                        event(u"depois"_qs, u"2018-12-01 00:00"_qs, u"2018-12-01 01:00"_qs)},
                       first, last),
                ElementsAre(u"1/11: viagem* 00:00-00:00"_qs,
                            u"2/11: feriado* 00:00-00:00, viagem* 00:00-00:00, aula 08:00-09:00"_qs,
                            u"3/11: lembrete 00:00-00:00, festa 22:00-01:00"_qs,
                            u"4/11: festa 01:00-04:00"_qs, u"30/11: longo 23:00-00:00"_qs));
    EXPECT_THAT(
        listed({event(u"a"_qs, u"2018-11-02 08:00"_qs, u"2018-11-02 09:00"_qs)}, last, first),
        IsEmpty());
    auto endless = event(u"a"_qs, u"2018-11-29 08:00"_qs, u"2018-11-29 08:00"_qs);
    endless.end += Seconds(1e300);
    EXPECT_EQ(listed({endless}, first, last).size(), 2U);
}

TEST(CalendarDays, ShowsAMonthInWholeWeeks)
{
    const auto weeks = [](QDate date, Qt::DayOfWeek first) {
        std::vector<QString> lines;
        for (const auto &week :
             CalendarDays::month({event(u"a"_qs, u"2018-10-31 23:00"_qs, u"2018-11-02 00:00"_qs)},
                                 date, first, zone)) {
            QString line;
            for (const auto &day : week)
                line += QString::number(day.date.day()) + (day.isInMonth ? u""_qs : u"-"_qs) +
                        (day.hasEvents ? u"* "_qs : u" "_qs);
            lines.push_back(line.trimmed());
        }
        return lines;
    };
    EXPECT_THAT(weeks(QDate(2018, 11, 15), Qt::Sunday),
                ElementsAre(u"28- 29- 30- 31-* 1* 2 3"_qs, u"4 5 6 7 8 9 10"_qs,
                            u"11 12 13 14 15 16 17"_qs, u"18 19 20 21 22 23 24"_qs,
                            u"25 26 27 28 29 30 1-"_qs));
    EXPECT_EQ(weeks(QDate(2018, 11, 1), Qt::Monday).front(), u"29- 30- 31-* 1* 2 3 4"_qs);
    EXPECT_EQ(weeks(QDate(2021, 2, 28), Qt::Monday).size(), 4U);
    EXPECT_EQ(weeks(QDate(2020, 8, 1), Qt::Monday).size(), 6U);
}

} // namespace
} // namespace velmo
