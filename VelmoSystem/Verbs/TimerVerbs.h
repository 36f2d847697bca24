#pragma once

#include "VelmoCore/Timers/TimerCenter.h"
#include "VelmoSystem/Control/VerbTable.h"

/// Countdowns and the pomodoro for scripts.
namespace velmo::TimerVerbs {

std::vector<VerbSyntax> syntaxes();
std::vector<Verb> make(TimerCenter &timers, const Scheduler &scheduler);
/// Until `listener` goes.
void connectChanges(const TimerCenter &timers, const QObject *listener,
                    const VerbTable::Changed &changed);

} // namespace velmo::TimerVerbs
