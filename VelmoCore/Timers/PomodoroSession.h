#pragma once

#include "VelmoCore/Timers/CountdownTimer.h"
#include "VelmoCore/Timers/PomodoroConfig.h"

namespace velmo {

enum class PomodoroPhase { focus, shortBreak, longBreak };
BOOST_DESCRIBE_ENUM(PomodoroPhase, focus, shortBreak, longBreak)

namespace Pomodoro {

QString title(PomodoroPhase phase);
/// At least a minute.
Seconds duration(PomodoroPhase phase, const PomodoroConfig &config);

} // namespace Pomodoro

/// Focus and breaks in turn, until the user stops.
struct PomodoroSession {
    PomodoroPhase phase = PomodoroPhase::focus;
    int completedFocus = 0;
    CountdownTimer timer;

    static PomodoroSession make(const PomodoroConfig &config, Date start);

    /// `completedFocus` counts the focus that ends with `phase`, if it is one.
    static PomodoroPhase nextPhase(PomodoroPhase phase, int completedFocus,
                                   const PomodoroConfig &config);
    /// Goes on to the next phase, which waits where the user wants to begin it himself.
    void advance(const PomodoroConfig &config, Date now);

    bool operator==(const PomodoroSession &) const = default;
};
BOOST_DESCRIBE_STRUCT(PomodoroSession, (), (phase, completedFocus, timer))

/// A focus that was brought to its end.
struct PomodoroRecord {
    Uuid id;
    Date date;
    int minutes = 0;

    bool operator==(const PomodoroRecord &) const = default;
};
BOOST_DESCRIBE_STRUCT(PomodoroRecord, (), (id, date, minutes))

} // namespace velmo
