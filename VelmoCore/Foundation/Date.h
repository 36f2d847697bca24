#pragma once

#include <QDateTime>
#include <QString>
#include <QStringView>

#include <chrono>
#include <optional>

namespace velmo {

/// A length of time in seconds, as a 64-bit float.
using Seconds = std::chrono::duration<double>;

/// A moment in UTC, in seconds since 1970. Fractions live in memory only: JSON holds whole seconds.
using Date = std::chrono::sys_time<Seconds>;

using namespace std::chrono_literals;

/// ISO 8601 in UTC at whole seconds, as 2026-03-14T09:26:53Z. A fraction is cut, not rounded.
QString iso8601Text(Date date);

/// Reads the form that `iso8601Text` writes, and nothing else.
std::optional<Date> dateFromISO8601(QStringView text);

/// The moment in the user's time zone, at milliseconds.
QDateTime localDateTime(Date date);

} // namespace velmo
