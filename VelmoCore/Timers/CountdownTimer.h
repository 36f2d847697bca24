#pragma once

#include "VelmoCore/Foundation/Date.h"
#include "VelmoCore/Foundation/Uuid.h"

#include <QString>

#include <boost/describe.hpp>

#include <variant>

namespace velmo {

/// A countdown by its end date, so that it survives sleep and a restart. Nothing in it ticks.
struct CountdownTimer {
    struct Running {
        static constexpr const char *caseName = "running";
        Date endDate;
        bool operator==(const Running &) const = default;
    };
    struct Paused {
        static constexpr const char *caseName = "paused";
        Seconds remaining;
        bool operator==(const Paused &) const = default;
    };
    struct Finished {
        static constexpr const char *caseName = "finished";
        Date at;
        bool operator==(const Finished &) const = default;
    };
    using State = std::variant<Running, Paused, Finished>;

    Uuid id;
    QString label;
    Seconds duration{0};
    State state;

    /// A new timer that runs from `start` on.
    static CountdownTimer make(const QString &label, Seconds duration, Date start);

    bool isRunning() const { return std::holds_alternative<Running>(state); }
    bool isPaused() const { return std::holds_alternative<Paused>(state); }
    bool isFinished() const { return std::holds_alternative<Finished>(state); }
    /// At least 0.
    Seconds remaining(Date date) const;
    /// 0 to 1; a timer without a duration is at 1.
    double progress(Date date) const;

    /// Only from `Running`, only from `Paused`, from any state.
    void pause(Date date);
    void resume(Date date);
    void restart(Date date);

    bool operator==(const CountdownTimer &) const = default;
};
BOOST_DESCRIBE_STRUCT(CountdownTimer::Running, (), (endDate))
BOOST_DESCRIBE_STRUCT(CountdownTimer::Paused, (), (remaining))
BOOST_DESCRIBE_STRUCT(CountdownTimer::Finished, (), (at))
BOOST_DESCRIBE_STRUCT(CountdownTimer, (), (id, label, duration, state))

} // namespace velmo
