#include "VelmoCore/Timers/PomodoroSession.h"

#include <algorithm>

namespace velmo {

QString Pomodoro::title(PomodoroPhase phase)
{
    switch (phase) {
    case PomodoroPhase::focus:
        return QStringLiteral("Foco");
    case PomodoroPhase::shortBreak:
        return QStringLiteral("Pausa curta");
    case PomodoroPhase::longBreak:
        return QStringLiteral("Pausa longa");
    }
    Q_UNREACHABLE();
}

Seconds Pomodoro::duration(PomodoroPhase phase, const PomodoroConfig &config)
{
    const int minutes = phase == PomodoroPhase::focus        ? config.focusMinutes
                        : phase == PomodoroPhase::shortBreak ? config.shortBreakMinutes
                                                             : config.longBreakMinutes;
    return std::chrono::minutes(std::max(minutes, 1));
}

PomodoroSession PomodoroSession::make(const PomodoroConfig &config, Date start)
{
    constexpr auto phase = PomodoroPhase::focus;
    return {phase, 0,
            CountdownTimer::make(Pomodoro::title(phase), Pomodoro::duration(phase, config), start)};
}

PomodoroPhase PomodoroSession::nextPhase(PomodoroPhase phase, int completedFocus,
                                         const PomodoroConfig &config)
{
    if (phase != PomodoroPhase::focus)
        return PomodoroPhase::focus;
    return completedFocus % std::max(config.cyclesBeforeLongBreak, 1) == 0
               ? PomodoroPhase::longBreak
               : PomodoroPhase::shortBreak;
}

void PomodoroSession::advance(const PomodoroConfig &config, Date now)
{
    if (phase == PomodoroPhase::focus)
        ++completedFocus;
    phase = nextPhase(phase, completedFocus, config);
    timer = CountdownTimer::make(Pomodoro::title(phase), Pomodoro::duration(phase, config), now);
    if (!config.autoAdvance)
        timer.pause(now);
}

} // namespace velmo
