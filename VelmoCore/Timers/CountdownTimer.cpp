#include "VelmoCore/Timers/CountdownTimer.h"

#include "VelmoCore/Foundation/Overloaded.h"

#include <algorithm>

namespace velmo {

CountdownTimer CountdownTimer::make(const QString &label, Seconds duration, Date start)
{
    return {makeUuid(), label, duration, Running{start + duration}};
}

Seconds CountdownTimer::remaining(Date date) const
{
    return std::visit(overloaded{
                          [&](const Running &running) {
                              return std::max(Seconds(running.endDate - date), Seconds(0));
                          },
                          [](const Paused &paused) { return paused.remaining; },
                          [](const Finished &) { return Seconds(0); },
                      },
                      state);
}

double CountdownTimer::progress(Date date) const
{
    return duration <= Seconds(0) ? 1 : std::min(1 - remaining(date) / duration, 1.0);
}

void CountdownTimer::pause(Date date)
{
    if (isRunning())
        state = Paused{remaining(date)};
}

void CountdownTimer::resume(Date date)
{
    if (const auto *paused = std::get_if<Paused>(&state))
        state = Running{date + paused->remaining};
}

void CountdownTimer::restart(Date date)
{
    state = Running{date + duration};
}

} // namespace velmo
