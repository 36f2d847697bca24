#include "VelmoCore/Calendar/ICSParser.h"

#include "tests/support/Printers.h"

#include <gmock/gmock.h>

#include <random>

namespace velmo {
namespace {

Date at(QStringView text)
{
    return dateFromISO8601(text).value();
}

/// "yyyy-MM-dd" of the dates in UTC, with the time from `start` on 5 July 2024 at 12:00.
QString expanded(const QString &rule, QStringView until = u"2024-12-31T00:00:00Z")
{
    QStringList days;
    const Date start = at(u"2024-07-05T12:00:00Z");
    for (const Date date : ICSParser::expand(rule, start, QTimeZone::utc(), start, at(until)))
        days.append(iso8601Text(date).mid(5, 5));
    return days.join(u' ');
}

TEST(Recurrence, FollowsTheRule)
{
    const std::pair<const char *, const char *> cases[] = {
        {"FREQ=DAILY;COUNT=3", "07-05 07-06 07-07"},
        {"FREQ=DAILY;INTERVAL=0;COUNT=2", "07-05 07-06"},
        {"FREQ=DAILY;INTERVAL=99999999999999;COUNT=2", "07-05"},
        {"FREQ=DAILY;BYDAY=3MO,TU;UNTIL=20240716T120000Z", "07-08 07-09 07-15 07-16"},
        {"FREQ=DAILY;COUNT=-1;UNTIL=20240706T115959Z", "07-05"},
        {"FREQ=DAILY;COUNT=0;UNTIL=20240706T115959Z", "07-05"},
        {"FREQ=DAILY;BYSETPOS=2", ""},
        {"FREQ=WEEKLY;COUNT=2", "07-05 07-12"},
        {"FREQ=WEEKLY;INTERVAL=2;BYDAY=MO,FR;COUNT=3", "07-05 07-15 07-19"},
        {"FREQ=WEEKLY;BYMONTH=9;COUNT=2", "09-06 09-13"},
        {"FREQ=MONTHLY;BYMONTHDAY=31", "07-31 08-31 10-31"},
        {"FREQ=MONTHLY;BYMONTHDAY=-31,-1;COUNT=3", "07-31 08-01 08-31"},
        {"FREQ=MONTHLY;BYDAY=-1FR;COUNT=3", "07-26 08-30 09-27"},
        {"FREQ=MONTHLY;BYDAY=MO,TU,WE,TH,FR;BYSETPOS=-1;COUNT=3", "07-31 08-30 09-30"},
        {"FREQ=MONTHLY;BYDAY=FR;BYMONTHDAY=13", "09-13 12-13"},
        {"FREQ=MONTHLY;BYDAY=5MO,2XX", "07-29 09-30 12-30"},
        {"FREQ=YEARLY;BYMONTH=11,8;BYDAY=1SU", "08-04 11-03"},
        {"FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30", ""},
        {"FREQ=MONTHLY;BYSETPOS=0", ""},
        {"FREQ=HOURLY", ""},
        {"COUNT=3", ""},
    };
    for (const auto &[rule, expected] : cases)
        EXPECT_EQ(expanded(QString::fromLatin1(rule)), QString::fromLatin1(expected)) << rule;
}

TEST(Recurrence, KeepsTheWallClockWhenClocksChange)
{
    const Date start = at(u"2024-03-09T07:30:00Z"); // 02:30, which 10 March lacks
    EXPECT_THAT(
        ICSParser::expand(QStringLiteral("FREQ=DAILY;COUNT=3"), start,
                          QTimeZone("America/New_York"), start, at(u"2025-01-01T00:00:00Z")),
        testing::ElementsAre(start, at(u"2024-03-10T07:30:00Z"), at(u"2024-03-11T06:30:00Z")));
}

/// A rule and its meaning once more, day by day.
struct SlowRule {
    int frequency; ///< 0 to 3: daily to yearly
    int interval;
    int count;
    std::vector<std::pair<int, int>> days; ///< number or 0, weekday from 1
    std::vector<int> monthDays, months, positions;

    QString text() const
    {
        static const char *const names[] = {"DAILY", "WEEKLY", "MONTHLY", "YEARLY"};
        static const char *const weekdays[] = {"MO", "TU", "WE", "TH", "FR", "SA", "SU"};
        auto text = QStringLiteral("FREQ=%1;INTERVAL=%2")
                        .arg(QLatin1String(names[frequency]))
                        .arg(interval);
        if (count > 0)
            text += QStringLiteral(";COUNT=%1").arg(count);
        QStringList parts;
        for (const auto &[number, weekday] : days)
            parts += (number ? QString::number(number) : QString()) +
                     QLatin1String(weekdays[weekday - 1]);
        const auto add = [&](const char *name) {
            if (!parts.isEmpty())
                text += QLatin1String(name) + parts.join(u',');
            parts.clear();
        };
        add(";BYDAY=");
        for (const auto &[name, list] : {std::pair(";BYMONTHDAY=", &monthDays),
                                         {";BYMONTH=", &months},
                                         {";BYSETPOS=", &positions}}) {
            for (const int number : *list)
                parts += QString::number(number);
            add(name);
        }
        return text;
    }

    bool has(const std::vector<int> &list, int value, int size) const
    {
        return std::find(list.begin(), list.end(), value) != list.end() ||
               std::find(list.begin(), list.end(), value - size - 1) != list.end();
    }

    bool hasDay(QDate day) const
    {
        return std::any_of(days.begin(), days.end(), [&](const auto &wanted) {
            const int ahead = (day.day() + 6) / 7;
            const int back = -(day.daysInMonth() - day.day()) / 7 - 1;
            return wanted.second == day.dayOfWeek() &&
                   (frequency < 2 || wanted.first == 0 || wanted.first == ahead ||
                    wanted.first == back);
        });
    }

    int period(QDate day) const
    {
        switch (frequency) {
        case 0:
            return int(day.toJulianDay());
        case 1:
            return int(day.toJulianDay() / 7); // Julian day 0 was a Monday
        case 2:
            return day.year() * 12 + day.month();
        default:
            return day.year();
        }
    }

    bool isCandidate(QDate day, QDate start) const
    {
        if ((period(day) - period(start)) % interval != 0)
            return false;
        if (!months.empty() && !has(months, day.month(), 99))
            return false;
        if (frequency == 3 && months.empty() && day.month() != start.month())
            return false;
        if (frequency == 1)
            return days.empty() ? day.dayOfWeek() == start.dayOfWeek() : hasDay(day);
        if (frequency > 1 && days.empty() && monthDays.empty())
            return day.day() == start.day();
        return (days.empty() || hasDay(day)) &&
               (monthDays.empty() || has(monthDays, day.day(), day.daysInMonth()));
    }

    std::vector<Date> walk(QDateTime start, Date from, Date until) const
    {
        std::vector<Date> found;
        std::vector<QDate> set;
        int counted = 0;
        const auto accept = [&] {
            const int size = int(set.size());
            for (int i = 0; i < size; ++i) {
                if (!positions.empty() && !has(positions, i + 1, size))
                    continue;
                const QDateTime moment(set[std::size_t(i)], start.time(), start.timeZone());
                const Date date{Seconds(double(moment.toSecsSinceEpoch()))};
                if (moment < start || date >= until || (count > 0 && counted++ >= count))
                    continue;
                if (date >= from)
                    found.push_back(date);
            }
            set.clear();
        };
        QDate day(start.date().year(), 1, 1);
        for (day = day.addDays(-day.dayOfWeek()); day.year() < 2029; day = day.addDays(1)) {
            if (isCandidate(day, start.date()))
                set.push_back(day);
            if (period(day) != period(day.addDays(1)))
                accept();
        }
        return found;
    }
};

TEST(Recurrence, GivesWhatAFullWalkGives)
{
    std::mt19937 random(7);
    const auto below = [&](int end) { return int(random() % unsigned(end)); };
    const auto some = [&](int chance, auto make) {
        std::vector<decltype(make())> list;
        for (int left = below(chance) ? 0 : 1 + below(3); left > 0; --left)
            list.push_back(make());
        return list;
    };
    for (int round = 0; round < 400; ++round) {
        SlowRule rule{
            below(4),
            1 + (below(2) ? 0 : below(9)),
            0,
            some(2, [&] { return std::pair(below(2) ? 0 : below(11) - 5, 1 + below(7)); }),
            some(3, [&] { return below(2) ? 1 + below(32) : -1 - below(31); }),
            some(4, [&] { return 1 + below(12); }),
            some(4, [&] { return below(2) ? 1 + below(4) : -1 - below(4); }),
        };
        const QTimeZone zone(below(2) ? "America/Sao_Paulo" : "Europe/London");
        const QDateTime start(QDate(1990 + below(35), 1 + below(12), 1).addDays(below(31)),
                              QTime(3 + below(20), 30), zone);
        const Date from = at(u"2000-01-01T00:00:00Z") + Seconds(86400.0 * below(10000));
        const Date until = from + Seconds(86400.0 * below(400));
        const int all = int(rule.walk(start, Date{}, until).size());
        rule.count = below(2) ? 0 : std::max(all - below(20), 0); // mostly ends in the window
        EXPECT_EQ(ICSParser::expand(rule.text(), Date{Seconds(double(start.toSecsSinceEpoch()))},
                                    zone, from, until),
                  rule.walk(start, from, until))
            << rule.text().toStdString() << ' ' << start.toString(Qt::ISODate).toStdString();
    }
}

TEST(Recurrence, EndsOverAllYears)
{
    const Date first = at(u"0001-01-01T00:00:00Z") - Seconds(366 * 86400.0);
    const Date last = at(u"9999-12-31T23:59:59Z");
    const auto count = [&](const char *rule) {
        return ICSParser::expand(QString::fromLatin1(rule), first, QTimeZone::utc(), first, last)
            .size();
    };
    EXPECT_EQ(count("FREQ=DAILY"), 3'652'425U);
    EXPECT_EQ(count("FREQ=MONTHLY;BYMONTH=2;BYMONTHDAY=30;COUNT=1"), 0U);
    EXPECT_EQ(count("FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=29"), 2425U);
}

} // namespace
} // namespace velmo
