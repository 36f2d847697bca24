#include "VelmoCore/Mail/MailParser.h"
#include "VelmoCore/Mail/MailReading.h"

#include <QDate>

#include <algorithm>
#include <array>

namespace velmo::MailParser {

namespace {

constexpr std::array<QStringView, 7> weekdays = {u"Monday", u"Tuesday",  u"Wednesday", u"Thursday",
                                                 u"Friday", u"Saturday", u"Sunday"};
constexpr std::array<QStringView, 12> months = {
    u"January", u"February", u"March",     u"April",   u"May",      u"June",
    u"July",    u"August",   u"September", u"October", u"November", u"December"};

struct ZoneName {
    QStringView name;
    int hours; ///< ahead of UTC
};
constexpr std::array<ZoneName, 11> zoneNames = {{{u"EST", -5},
                                                 {u"EDT", -4},
                                                 {u"CST", -6},
                                                 {u"CDT", -5},
                                                 {u"MST", -7},
                                                 {u"MDT", -6},
                                                 {u"PST", -8},
                                                 {u"PDT", -7},
                                                 {u"AKST", -9},
                                                 {u"AKDT", -8},
                                                 {u"HST", -10}}};

/// What a date is made of besides its weekday.
struct Pattern {
    bool hasWeekday;
    int yearDigits;
    bool hasSeconds;
    bool hasZoneName;
};
constexpr std::array<Pattern, 5> patterns = {{{true, 4, true, false},
                                              {false, 4, true, false},
                                              {true, 4, false, false},
                                              {true, 2, true, false},
                                              {true, 4, true, true}}};

/// Reads a date from left to right. Blanks ahead of a field don't count.
class DateReader {
public:
    explicit DateReader(QStringView text) : m_rest(text) {}

    bool isAtEnd() const { return m_rest.isEmpty(); }

    bool literal(QStringView text)
    {
        if (!m_rest.startsWith(text, Qt::CaseInsensitive))
            return false;
        m_rest = m_rest.sliced(text.size());
        return true;
    }

    std::optional<int> number(qsizetype fewestDigits, qsizetype mostDigits)
    {
        skipBlanks();
        const QStringView digits = takeDigits();
        if (digits.size() < fewestDigits || digits.size() > mostDigits)
            return std::nullopt;
        return digits.toInt();
    }

    /// The position of a name, whole or in three letters. Absent if none of them comes next.
    template <std::size_t count>
    std::optional<int> name(const std::array<QStringView, count> &names)
    {
        skipBlanks();
        for (std::size_t i = 0; i < count; ++i) {
            if (literal(names[i]) || literal(names[i].first(3)))
                return int(i);
        }
        return std::nullopt;
    }

    /// Seconds ahead of UTC: "-0300", "-03:00", "-03", "Z", "GMT", "GMT-3" and, where they are
    /// asked for, the names of American zones.
    std::optional<int> zone(bool hasName)
    {
        skipBlanks();
        if (startsWithSign())
            return offset(2);
        for (const QStringView utc : {u"UTC", u"GMT", u"UT", u"Z"}) {
            if (literal(utc))
                return startsWithSign() ? offset(1) : 0;
        }
        for (const ZoneName &zone : zoneNames) {
            if (hasName && literal(zone.name))
                return zone.hours * 3600;
        }
        return std::nullopt;
    }

private:
    bool startsWithSign() const { return m_rest.startsWith(u'+') || m_rest.startsWith(u'-'); }

    std::optional<int> offset(qsizetype fewestDigits)
    {
        const int sign = m_rest.front() == u'-' ? -1 : 1;
        m_rest = m_rest.sliced(1);
        QStringView hours = takeDigits();
        QStringView minutes;
        if (hours.size() == 4) {
            minutes = hours.last(2);
            hours = hours.first(2);
        } else if (literal(u":")) {
            minutes = takeDigits();
            if (minutes.size() != 2)
                return std::nullopt;
        }
        if (hours.size() < fewestDigits || hours.size() > 2 || hours.toInt() > 23 ||
            minutes.toInt() > 59)
            return std::nullopt;
        return sign * (hours.toInt() * 3600 + minutes.toInt() * 60);
    }

    QStringView takeDigits()
    {
        const auto isDigit = [](QChar c) { return c >= u'0' && c <= u'9'; };
        const auto *end = std::find_if_not(m_rest.begin(), m_rest.end(), isDigit);
        const QStringView digits = m_rest.first(end - m_rest.begin());
        m_rest = m_rest.sliced(digits.size());
        return digits;
    }

    void skipBlanks()
    {
        const auto *start = std::find_if_not(m_rest.begin(), m_rest.end(), isBlank);
        m_rest = m_rest.sliced(start - m_rest.begin());
    }

    QStringView m_rest;
};

/// The day, with a blank behind it.
std::optional<QDate> readDay(DateReader &in, int yearDigits)
{
    const auto day = in.number(1, 2);
    const auto month = day && in.literal(u" ") ? in.name(months) : std::nullopt;
    const auto year = month && in.literal(u" ") ? in.number(yearDigits, yearDigits) : std::nullopt;
    if (!year || !in.literal(u" "))
        return std::nullopt;
    const QDate date(yearDigits == 2 ? 2000 + *year : *year, *month + 1, *day);
    return date.isValid() ? std::optional(date) : std::nullopt;
}

/// Seconds since midnight, with a blank behind them.
std::optional<int> readClock(DateReader &in, bool hasSeconds)
{
    const auto hour = in.number(1, 2);
    const auto minute = hour && in.literal(u":") ? in.number(1, 2) : std::nullopt;
    std::optional<int> second = 0;
    if (hasSeconds)
        second = minute && in.literal(u":") ? in.number(1, 2) : std::nullopt;
    if (!minute || !second || !in.literal(u" ") || *hour > 23 || *minute > 59 || *second > 59)
        return std::nullopt;
    return *hour * 3600 + *minute * 60 + *second;
}

std::optional<Date> readDate(QStringView text, const Pattern &pattern)
{
    DateReader in(text);
    if (pattern.hasWeekday && !(in.name(weekdays) && in.literal(u", ")))
        return std::nullopt;
    const auto day = readDay(in, pattern.yearDigits);
    const auto clock = day ? readClock(in, pattern.hasSeconds) : std::nullopt;
    const auto ahead = clock ? in.zone(pattern.hasZoneName) : std::nullopt;
    if (!ahead || !in.isAtEnd())
        return std::nullopt;
    const qint64 midnight = (day->toJulianDay() - QDate(1970, 1, 1).toJulianDay()) * 86400;
    return Date{Seconds(double(midnight + *clock - *ahead))};
}

} // namespace

std::optional<Date> parseDate(const QString &text)
{
    const qsizetype comment = text.indexOf(u'(');
    const QStringView date =
        trimmedBlanks(QStringView(text).first(comment < 0 ? text.size() : comment));
    for (const Pattern &pattern : patterns) {
        if (const auto found = readDate(date, pattern))
            return found;
    }
    return std::nullopt;
}

} // namespace velmo::MailParser
