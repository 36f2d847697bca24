#pragma once

#include <boost/describe.hpp>

namespace velmo {

/// The lengths of a pomodoro cycle.
struct PomodoroConfig {
    int focusMinutes = 25;
    int shortBreakMinutes = 5;
    int longBreakMinutes = 15;
    int cyclesBeforeLongBreak = 4;
    bool autoAdvance = true;

    bool operator==(const PomodoroConfig &) const = default;
};
BOOST_DESCRIBE_STRUCT(PomodoroConfig, (),
                      (focusMinutes, shortBreakMinutes, longBreakMinutes, cyclesBeforeLongBreak,
                       autoAdvance))

} // namespace velmo
