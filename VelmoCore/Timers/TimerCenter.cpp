#include "VelmoCore/Timers/TimerCenter.h"

#include "VelmoCore/Foundation/Words.h"

#include <QPointer>

#include <algorithm>

namespace velmo {

namespace {

constexpr Seconds leastWake = 0.05s;
constexpr int timerPriority = 5;
constexpr int pomodoroPriority = 6;

QString pomodoroID()
{
    return QString::fromLatin1(TimerCenter::pomodoroActivityID);
}

QString activityID(const Uuid &id)
{
    return QStringLiteral("timers.") + uuidText(id);
}

/// When it ends, if it runs.
std::optional<Date> endOf(const CountdownTimer &timer)
{
    const auto *running = std::get_if<CountdownTimer::Running>(&timer.state);
    return running ? std::optional(running->endDate) : std::nullopt;
}

bool hasEnded(const CountdownTimer &timer, Date now)
{
    const auto end = endOf(timer);
    return end && *end <= now;
}

} // namespace

TimerCenter::TimerCenter(const std::optional<QString> &path, const DataFiles &files,
                         Scheduler &scheduler, ActivityCenter &activity,
                         std::function<PomodoroConfig()> config)
    : m_scheduler(scheduler), m_activity(activity), m_config(std::move(config)),
      m_file(
          path, files.unsealed(), scheduler, {QStringLiteral("Timers"), QStringLiteral("timers")},
          [this] { return m_state; }, [this] { Q_EMIT issuesChanged(); })
{
    m_file.load([this](Snapshot kept) { m_state = std::move(kept); });
}

bool TimerCenter::isRunning() const
{
    return (pomodoro() && pomodoro()->timer.isRunning()) ||
           std::ranges::any_of(timers(), &CountdownTimer::isRunning);
}

int TimerCenter::focusSessionsToday() const
{
    const QDate today = localDateTime(m_scheduler.now()).date();
    return int(std::ranges::count(history(), today, [](const PomodoroRecord &record) {
        return localDateTime(record.date).date();
    }));
}

void TimerCenter::evaluate()
{
    const Date now = m_scheduler.now();
    std::vector<Completion> completions;
    for (CountdownTimer &timer : m_state.timers) {
        if (!hasEnded(timer, now))
            continue;
        timer.state = CountdownTimer::Finished{*endOf(timer)};
        completions.emplace_back(TimerCompletion{timer});
    }
    if (const auto completion = evaluatePomodoro(now))
        completions.push_back(*completion);
    publishActivities();
    scheduleWake(now);
    if (completions.empty())
        return;
    m_file.saveNow();
    Q_EMIT changed();
    for (const Completion &completion : completions)
        onCompletion(completion);
}

std::optional<TimerCenter::Completion> TimerCenter::evaluatePomodoro(Date now)
{
    if (!m_state.pomodoro || !hasEnded(m_state.pomodoro->timer, now))
        return std::nullopt;
    PomodoroSession &session = *m_state.pomodoro;
    const PomodoroPhase finished = session.phase;
    if (finished == PomodoroPhase::focus) {
        auto &history = m_state.history;
        const auto minutes =
            std::chrono::duration_cast<std::chrono::minutes>(session.timer.duration);
        history.insert(history.begin(), {makeUuid(), now, int(minutes.count())});
        if (history.size() > historyLimit)
            history.resize(historyLimit);
    }
    session.advance(m_config(), now);
    return PomodoroCompletion{finished, session.phase};
}

CountdownTimer TimerCenter::startTimer(Seconds duration, const QString &label)
{
    const auto timer = CountdownTimer::make(label.isEmpty() ? format(duration) : label, duration,
                                            m_scheduler.now());
    m_state.timers.push_back(timer);
    commit();
    return timer;
}

void TimerCenter::pause(const Uuid &id)
{
    change(id, &CountdownTimer::pause);
}

void TimerCenter::resume(const Uuid &id)
{
    change(id, &CountdownTimer::resume);
}

void TimerCenter::restart(const Uuid &id)
{
    change(id, &CountdownTimer::restart);
}

void TimerCenter::change(const Uuid &id, void (CountdownTimer::*operation)(Date))
{
    const auto timer = std::ranges::find(m_state.timers, id, &CountdownTimer::id);
    if (timer == m_state.timers.end())
        return;
    ((*timer).*operation)(m_scheduler.now());
    commit();
}

TimerCenter::Removed TimerCenter::remove(const Uuid &id)
{
    m_activity.finish(activityID(id));
    return take([&](const CountdownTimer &timer) { return timer.id == id; });
}

TimerCenter::Removed TimerCenter::clearFinished()
{
    return take(&CountdownTimer::isFinished);
}

TimerCenter::Removed TimerCenter::take(const std::function<bool(const CountdownTimer &)> &isWanted)
{
    Removed removed;
    for (std::size_t place = 0; place < timers().size(); ++place) {
        if (isWanted(timers()[place]))
            removed.emplace(place, timers()[place]);
    }
    std::erase_if(m_state.timers, isWanted);
    commit();
    return removed;
}

void TimerCenter::restore(const Removed &timers)
{
    auto &all = m_state.timers;
    for (const auto &[place, timer] : timers) {
        if (std::ranges::find(all, timer.id, &CountdownTimer::id) == all.end())
            all.insert(all.begin() + std::ptrdiff_t(std::min(place, all.size())), timer);
    }
    commit();
}

void TimerCenter::addPreset(Seconds seconds)
{
    auto &presets = m_state.presets;
    if (!(seconds > Seconds(0)) || std::ranges::find(presets, seconds) != presets.end())
        return;
    presets.push_back(seconds);
    std::ranges::sort(presets);
    commit();
}

void TimerCenter::removePreset(Seconds seconds)
{
    std::erase(m_state.presets, seconds);
    commit();
}

void TimerCenter::startPomodoro()
{
    m_state.pomodoro = PomodoroSession::make(m_config(), m_scheduler.now());
    commit();
}

void TimerCenter::togglePomodoroPause()
{
    if (!m_state.pomodoro)
        return;
    CountdownTimer &timer = m_state.pomodoro->timer;
    if (timer.isRunning())
        timer.pause(m_scheduler.now());
    else
        timer.resume(m_scheduler.now());
    commit();
}

void TimerCenter::skipPomodoroPhase()
{
    if (!m_state.pomodoro)
        return;
    m_state.pomodoro->advance(m_config(), m_scheduler.now());
    commit();
}

void TimerCenter::stopPomodoro()
{
    m_state.pomodoro.reset();
    commit();
}

void TimerCenter::clearHistory()
{
    m_state.history.clear();
    commit();
}

QString TimerCenter::format(Seconds seconds)
{
    return Words::clock(seconds);
}

/// After an operation: what has ended meanwhile completes as well.
void TimerCenter::commit()
{
    m_file.saveNow();
    Q_EMIT changed();
    evaluate();
}

void TimerCenter::publishActivities()
{
    const QPointer<TimerCenter> self(this);
    for (const CountdownTimer &timer : m_state.timers) {
        const QString id = activityID(timer.id);
        if (timer.isFinished()) {
            m_activity.finish(id);
            continue;
        }
        publish(timer,
                {.id = id,
                 .symbol = QStringLiteral("timer"),
                 .title = timer.label,
                 .priority = timerPriority},
                [self, id = timer.id] {
                    if (self)
                        self->remove(id);
                });
    }
    if (!m_state.pomodoro) {
        m_activity.finish(pomodoroID());
        return;
    }
    const PomodoroSession &session = *m_state.pomodoro;
    publish(session.timer,
            {.id = pomodoroID(),
             .symbol = session.phase == PomodoroPhase::focus
                           ? QStringLiteral("brain.head.profile")
                           : QStringLiteral("cup.and.saucer.fill"),
             .title = Pomodoro::title(session.phase),
             .priority = pomodoroPriority},
            [self] {
                if (self)
                    self->stopPomodoro();
            });
}

void TimerCenter::publish(const CountdownTimer &timer, LiveActivity activity,
                          std::function<void()> onCancel)
{
    activity.source = QStringLiteral("timers");
    activity.isCancellable = true;
    if (const auto end = endOf(timer))
        activity.countdown = DateRange{*end - timer.duration, *end};
    m_activity.upsert(activity, std::move(onCancel));
}

void TimerCenter::scheduleWake(Date now)
{
    m_wake.cancel();
    std::optional<Date> earliest;
    const auto consider = [&](const CountdownTimer &timer) {
        if (const auto end = endOf(timer); end && (!earliest || *end < *earliest))
            earliest = end;
    };
    std::ranges::for_each(m_state.timers, consider);
    if (m_state.pomodoro)
        consider(m_state.pomodoro->timer);
    if (earliest)
        m_wake = m_scheduler.at(std::max(*earliest, now + leastWake), [this] { evaluate(); });
}

} // namespace velmo
