#include "VelmoCore/Calendar/RecurrenceRule.h"

#include <algorithm>

namespace velmo::ICSParser {

namespace {

/// More periods than there are days in the four-digit years.
constexpr std::int64_t longestInterval = 4'000'000;

std::optional<std::int64_t> integer(QStringView text)
{
    bool isNumber = false;
    const std::int64_t value = text.trimmed().toLongLong(&isNumber);
    return isNumber ? std::optional(value) : std::nullopt;
}

/// Calls `read` with every number of the list; true if there was one.
template <class Read>
bool readNumbers(QStringView list, Read read)
{
    bool hasNumber = false;
    for (const QStringView piece : list.tokenize(u',')) {
        if (const auto number = integer(piece)) {
            hasNumber = true;
            read(*number);
        }
    }
    return hasNumber;
}

template <class Mask>
void setBit(Mask &mask, std::int64_t bit, std::int64_t last)
{
    if (bit >= 1 && bit <= last)
        mask = Mask(mask | Mask(1) << bit);
}

void readWeekday(QStringView piece, RecurrenceRule &rule)
{
    constexpr std::array<QStringView, 7> names{u"MO", u"TU", u"WE", u"TH", u"FR", u"SA", u"SU"};
    if (piece.size() < 2)
        return;
    const auto name = std::find(names.begin(), names.end(), piece.last(2));
    const QStringView digits = piece.chopped(2);
    const auto number = integer(digits);
    if (name == names.end() || (!digits.isEmpty() && !number))
        return;
    const auto weekday = std::size_t(name - names.begin());
    const auto bit = std::uint8_t(1U << weekday);
    rule.hasDays = true;
    rule.anyWeekday |= bit;
    if (!number) {
        rule.everyWeekday |= bit;
        return;
    }
    setBit(rule.weekdays[weekday], *number, 5);
    if (*number < 0 && *number >= -5)
        setBit(rule.lastWeekdays[weekday], -*number, 5);
}

void readPosition(std::int64_t position, RecurrenceRule &rule)
{
    const auto size = std::int64_t(rule.positions.size());
    if (position > 0 && position < size)
        rule.positions.set(std::size_t(position));
    else if (position < 0 && position > -size)
        rule.lastPositions.set(std::size_t(-position));
}

void readPart(QStringView name, QStringView value, RecurrenceRule &rule)
{
    if (name == u"INTERVAL") {
        rule.interval = std::clamp<std::int64_t>(integer(value).value_or(1), 1, longestInterval);
    } else if (name == u"COUNT") {
        rule.count = integer(value);
        if (rule.count && *rule.count < 1)
            rule.count.reset();
    } else if (name == u"BYDAY") {
        for (const QStringView piece : value.tokenize(u','))
            readWeekday(piece.trimmed(), rule);
    } else if (name == u"BYMONTHDAY") {
        rule.hasMonthDays |= readNumbers(value, [&](std::int64_t day) {
            setBit(rule.monthDays, day, 31);
            if (day < 0 && day >= -31)
                setBit(rule.lastMonthDays, -day, 31);
        });
    } else if (name == u"BYMONTH") {
        rule.hasMonths |=
            readNumbers(value, [&](std::int64_t month) { setBit(rule.months, month, 12); });
    } else if (name == u"BYSETPOS") {
        rule.hasPositions |=
            readNumbers(value, [&](std::int64_t position) { readPosition(position, rule); });
    }
}

std::optional<Frequency> frequencyNamed(QStringView name)
{
    constexpr std::array<QStringView, 4> names{u"DAILY", u"WEEKLY", u"MONTHLY", u"YEARLY"};
    const auto found = std::find(names.begin(), names.end(), name);
    if (found == names.end())
        return std::nullopt;
    return Frequency(found - names.begin());
}

} // namespace

std::optional<RecurrenceRule> readRule(QStringView text, ZoneClock &zone, ZoneBook &zones)
{
    RecurrenceRule rule;
    bool hasFrequency = false;
    for (const QStringView part : text.tokenize(u';')) {
        const qsizetype equals = part.indexOf(u'=');
        if (equals < 0)
            continue;
        const QString name = part.first(equals).trimmed().toString().toUpper();
        const QStringView value = part.sliced(equals + 1).trimmed();
        if (name == u"FREQ") {
            const auto frequency = frequencyNamed(value);
            if (!frequency)
                return std::nullopt;
            rule.frequency = *frequency;
            hasFrequency = true;
        } else if (name == u"UNTIL") {
            if (const auto last = readDate(value, {}, zone, zones))
                rule.until = last->time;
        } else {
            readPart(name, value, rule);
        }
    }
    return hasFrequency ? std::optional(rule) : std::nullopt;
}

} // namespace velmo::ICSParser
