#pragma once

#include "VelmoCore/Calendar/ICSReading.h"

#include <array>
#include <bitset>

namespace velmo::ICSParser {

enum class Frequency { daily, weekly, monthly, yearly };

/// How often work on a feed may look at a period or a date. What is real needs a fraction.
struct Effort {
    std::int64_t dates = 500'000;
    std::int64_t periods = 10'000'000;
};

/// A recurrence rule (RFC 5545, 3.3.10) as masks, so that lists of any length cost nothing more.
/// What names nothing, such as the position 0, selects nothing.
struct RecurrenceRule {
    Frequency frequency = Frequency::daily;
    std::int64_t interval = 1;         ///< in periods
    std::optional<std::int64_t> count; ///< 1 or more dates, from the event's start on
    std::optional<std::int64_t> until; ///< UTC

    bool hasDays = false;      ///< BYDAY
    bool hasMonthDays = false; ///< BYMONTHDAY
    bool hasMonths = false;    ///< BYMONTH
    bool hasPositions = false; ///< BYSETPOS

    std::uint8_t everyWeekday = 0;              ///< bit 0 is Monday; without a number
    std::uint8_t anyWeekday = 0;                ///< with a number or without
    std::array<std::uint8_t, 7> weekdays{};     ///< bit n: the nth of the month
    std::array<std::uint8_t, 7> lastWeekdays{}; ///< counted from the month's end
    std::uint32_t monthDays = 0;                ///< bit n: day n
    std::uint32_t lastMonthDays = 0;            ///< counted from the month's end
    std::uint16_t months = 0;                   ///< bit n: month n
    std::bitset<373> positions;                 ///< no period has more candidates
    std::bitset<373> lastPositions;
};

/// Absent for an unknown frequency. `zone` is for UNTIL.
std::optional<RecurrenceRule> readRule(QStringView text, ZoneClock &zone, ZoneBook &zones);

/// As the public `expand`. Ends early when the effort is used up.
std::vector<Date> expand(const RecurrenceRule &rule, Date start, ZoneClock &zone, Date from,
                         Date until, Effort &effort);

} // namespace velmo::ICSParser
