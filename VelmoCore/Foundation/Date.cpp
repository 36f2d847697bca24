#include "VelmoCore/Foundation/Date.h"

#include <cmath>

namespace velmo {

namespace {

using WholeSeconds = std::chrono::sys_seconds;
using namespace std::chrono;

constexpr WholeSeconds firstMoment = sys_days{year{1} / 1 / 1};
constexpr WholeSeconds lastMoment = sys_days{year{9999} / 12 / 31} + 24h - 1s;

/// Dates beyond the four-digit years count as the nearest one in them, so that all text reads back.
WholeSeconds wholeSeconds(Date date)
{
    const double first = static_cast<double>(firstMoment.time_since_epoch().count());
    const double last = static_cast<double>(lastMoment.time_since_epoch().count());
    const double value = std::floor(date.time_since_epoch().count());
    return WholeSeconds{seconds{static_cast<qint64>(std::fmin(std::fmax(value, first), last))}};
}

/// The digits as a number; nothing if one of them is not an ASCII digit.
std::optional<unsigned> number(QStringView digits)
{
    unsigned value = 0;
    for (const QChar digit : digits) {
        if (digit < u'0' || digit > u'9')
            return std::nullopt;
        value = value * 10 + (digit.unicode() - u'0');
    }
    return value;
}

bool hasPunctuation(QStringView text)
{
    return text.size() == 20 && text[4] == u'-' && text[7] == u'-' && text[10] == u'T' &&
           text[13] == u':' && text[16] == u':' && text[19] == u'Z';
}

} // namespace

QString iso8601Text(Date date)
{
    const WholeSeconds moment = wholeSeconds(date);
    const auto day = floor<days>(moment);
    const year_month_day calendar{day};
    const hh_mm_ss time{moment - day};
    return QString::asprintf(
        "%04d-%02u-%02uT%02d:%02d:%02dZ", static_cast<int>(calendar.year()),
        static_cast<unsigned>(calendar.month()), static_cast<unsigned>(calendar.day()),
        static_cast<int>(time.hours().count()), static_cast<int>(time.minutes().count()),
        static_cast<int>(time.seconds().count()));
}

std::optional<Date> dateFromISO8601(QStringView text)
{
    if (!hasPunctuation(text))
        return std::nullopt;
    const auto y = number(text.sliced(0, 4));
    const auto mo = number(text.sliced(5, 2));
    const auto d = number(text.sliced(8, 2));
    const auto h = number(text.sliced(11, 2));
    const auto mi = number(text.sliced(14, 2));
    const auto s = number(text.sliced(17, 2));
    if (!y || !mo || !d || !h || !mi || !s)
        return std::nullopt;
    const year_month_day calendar{year{static_cast<int>(*y)}, month{*mo}, day{*d}};
    if (*y == 0 || !calendar.ok() || *h > 23 || *mi > 59 || *s > 59)
        return std::nullopt;
    return sys_days{calendar} + hours{*h} + minutes{*mi} + seconds{*s};
}

} // namespace velmo
