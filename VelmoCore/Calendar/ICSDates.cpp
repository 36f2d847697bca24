#include "VelmoCore/Calendar/ICSReading.h"

#include <algorithm>
#include <chrono>
#include <cmath>

namespace velmo::ICSParser {

namespace {

/// The ASCII digits of `text` from `start` on as a number; -1 if there aren't that many.
int digitsAt(QStringView text, qsizetype start, qsizetype count)
{
    if (text.size() < start + count)
        return -1;
    int value = 0;
    for (const QChar digit : text.sliced(start, count)) {
        if (digit < u'0' || digit > u'9')
            return -1;
        value = value * 10 + (digit.unicode() - u'0');
    }
    return value;
}

/// Midnight of "20240705" in seconds since 1970, without a zone.
std::optional<std::int64_t> dayAt(QStringView text)
{
    using namespace std::chrono;
    const int year = digitsAt(text, 0, 4);
    const int month = digitsAt(text, 4, 2);
    const int day = digitsAt(text, 6, 2);
    if (year < 0 || month < 0 || day < 0)
        return std::nullopt;
    const year_month_day date{std::chrono::year(year), std::chrono::month(unsigned(month)),
                              std::chrono::day(unsigned(day))};
    if (!date.ok())
        return std::nullopt;
    return std::int64_t(sys_days(date).time_since_epoch().count()) * 86400;
}

/// The seconds behind midnight of "T090000". A leap second counts as the second before it.
std::optional<std::int64_t> timeAt(QStringView text)
{
    const int hour = digitsAt(text, 1, 2);
    const int minute = digitsAt(text, 3, 2);
    const int second = digitsAt(text, 5, 2);
    if (hour < 0 || hour > 23 || minute < 0 || minute > 59 || second < 0 || second > 60)
        return std::nullopt;
    return hour * 3600 + minute * 60 + std::min(second, 59);
}

bool isDay(QStringView value, const QMap<QString, QString> &params)
{
    if (!params.isEmpty()) {
        const auto kind = params.constFind(QStringLiteral("VALUE"));
        if (kind != params.cend() && kind->compare(u"DATE", Qt::CaseInsensitive) == 0)
            return true;
    }
    // With more than eight units the eight characters can't all be digits, and no date comes of it.
    return value.size() == 8 && !value.contains(u'T');
}

double secondsOf(QChar unit)
{
    switch (unit.unicode()) {
    case u'W':
        return 604800;
    case u'D':
        return 86400;
    case u'H':
        return 3600;
    case u'M':
        return 60;
    case u'S':
        return 1;
    default:
        return 0;
    }
}

} // namespace

ZoneClock *ZoneBook::named(const QString &name)
{
    const auto known = m_named.constFind(name);
    if (known != m_named.cend())
        return known->get();
    const auto zone = timeZone(name);
    const auto clock = zone ? std::make_shared<ZoneClock>(*zone) : nullptr;
    m_named.insert(name, clock);
    return clock.get();
}

std::optional<Reading> readDate(QStringView value, const QMap<QString, QString> &params,
                                ZoneClock &zone, ZoneBook &zones)
{
    value = value.trimmed();
    Reading reading{0, isDay(value, params), &zone};
    if (!params.isEmpty() && !reading.allDay) {
        const auto name = params.constFind(QStringLiteral("TZID"));
        if (ZoneClock *named = name == params.cend() ? nullptr : zones.named(*name))
            reading.clock = named;
    }
    if (value.endsWith(u'Z')) {
        value.chop(1);
        reading.clock = &zones.utc();
    }
    const auto day = dayAt(value);
    if (!day)
        return std::nullopt;
    reading.time = *day;
    if (reading.allDay) {
        reading.clock = &zones.machine();
    } else {
        const bool hasTime = value.size() > 8 && value[8] == u'T';
        const auto time = hasTime ? timeAt(value.sliced(8)) : std::nullopt;
        if (!time)
            return std::nullopt;
        reading.time += *time;
    }
    reading.time = reading.clock->utcFromLocal(reading.time);
    return reading;
}

std::optional<Moment> date(const Property &property, const QTimeZone &zone)
{
    ZoneBook zones;
    ZoneClock clock(zone);
    const auto reading = readDate(property.value, property.params, clock, zones);
    if (!reading)
        return std::nullopt;
    return Moment{Date{Seconds(double(reading->time))}, reading->allDay, reading->clock->zone()};
}

std::optional<Seconds> parseDuration(QStringView text)
{
    const bool isNegative = text.startsWith(u'-');
    if (isNegative || text.startsWith(u'+'))
        text = text.sliced(1);
    if (!text.startsWith(u'P'))
        return std::nullopt;
    double total = 0;
    double number = 0;
    bool hasDigits = false;
    bool hasPart = false;
    for (const QChar c : text.sliced(1)) {
        if (c >= u'0' && c <= u'9') {
            number = number * 10 + (c.unicode() - u'0');
            hasDigits = true;
        } else if (hasDigits && secondsOf(c) > 0) {
            total += number * secondsOf(c);
            number = 0;
            hasDigits = false;
            hasPart = true;
        } else if (c != u'T' || hasDigits) {
            return std::nullopt;
        }
    }
    if (hasDigits || !hasPart || !std::isfinite(total))
        return std::nullopt;
    return Seconds(isNegative ? -total : total);
}

} // namespace velmo::ICSParser
