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

/// Puts the digits of `value` over the zeros that end before `end`.
void putNumber(QString &text, qsizetype end, qint64 value)
{
    for (; value > 0; value /= 10)
        text[--end] = QChar(u'0' + static_cast<char16_t>(value % 10));
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
    QString text = QStringLiteral("0000-00-00T00:00:00Z");
    putNumber(text, 4, static_cast<int>(calendar.year()));
    putNumber(text, 7, static_cast<unsigned>(calendar.month()));
    putNumber(text, 10, static_cast<unsigned>(calendar.day()));
    putNumber(text, 13, time.hours().count());
    putNumber(text, 16, time.minutes().count());
    putNumber(text, 19, time.seconds().count());
    return text;
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

QDateTime localDateTime(Date date)
{
    return QDateTime::fromMSecsSinceEpoch(
        std::chrono::floor<std::chrono::milliseconds>(date.time_since_epoch()).count());
}

} // namespace velmo
