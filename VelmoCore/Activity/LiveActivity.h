#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <QString>

#include <boost/describe.hpp>

#include <optional>

namespace velmo {

/// A closed span of time.
struct DateRange {
    Date start;
    Date end;

    bool operator==(const DateRange &) const = default;
};
BOOST_DESCRIBE_STRUCT(DateRange, (), (start, end))

/// Something that is going on: a job, a timer, a recording. Lives in memory only.
struct LiveActivity {
    QString id; ///< stable key, as "timers.pomodoro"
    QString source;
    QString symbol;
    QString title;
    std::optional<QString> detail;
    std::optional<double> progress; ///< 0 to 1
    std::optional<DateRange> countdown;
    std::optional<Date> startedAt; ///< for activities that count up
    int priority = 0;              ///< larger comes first
    bool isCancellable = false;

    /// By the countdown if there is one, else the stored progress.
    std::optional<double> progressAt(Date date) const;
    /// Seconds to the end of the countdown, at least 0; nothing without one.
    std::optional<Seconds> remainingAt(Date date) const;

    bool operator==(const LiveActivity &) const = default;
};
BOOST_DESCRIBE_STRUCT(LiveActivity, (),
                      (id, source, symbol, title, detail, progress, countdown, startedAt, priority,
                       isCancellable))

} // namespace velmo
