#pragma once

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Storage/StateFile.h"
#include "VelmoCore/Timers/PomodoroSession.h"

#include <QObject>

#include <functional>
#include <map>
#include <optional>
#include <variant>
#include <vector>

namespace velmo {

/// Countdowns, the pomodoro and its history. What runs is known by its end date, and the only thing
/// that waits is a wake-up for the earliest of them. Main thread only.
class TimerCenter : public QObject {
    Q_OBJECT

public:
    struct Snapshot {
        std::vector<CountdownTimer> timers;
        std::vector<Seconds> presets{60s, 300s, 600s, 1500s};
        std::optional<PomodoroSession> pomodoro;
        std::vector<PomodoroRecord> history; ///< newest first

        bool operator==(const Snapshot &) const = default;
    };
    struct TimerCompletion {
        CountdownTimer timer;
    };
    struct PomodoroCompletion {
        PomodoroPhase finished;
        PomodoroPhase next;
    };
    using Completion = std::variant<TimerCompletion, PomodoroCompletion>;
    /// Timers by the place that they had in the list.
    using Removed = std::map<std::size_t, CountdownTimer>;

    static constexpr std::size_t historyLimit = 500;
    static constexpr const char *pomodoroActivityID = "timers.pomodoro";

    /// Loads at once, as its file is in plain; never fails. Without a path nothing is kept.
    TimerCenter(const std::optional<QString> &path, const DataFiles &files, Scheduler &scheduler,
                ActivityCenter &activity, std::function<PomodoroConfig()> config);

    /// After each completion, once the state is saved.
    std::function<void(const Completion &)> onCompletion = [](const Completion &) {};

    const std::vector<CountdownTimer> &timers() const { return m_state.timers; }
    /// Ascending.
    const std::vector<Seconds> &presets() const { return m_state.presets; }
    const std::optional<PomodoroSession> &pomodoro() const { return m_state.pomodoro; }
    const std::vector<PomodoroRecord> &history() const { return m_state.history; }
    /// Whether a countdown or the pomodoro runs.
    bool isRunning() const;
    /// Of the user's calendar day.
    int focusSessionsToday() const;
    const std::optional<QString> &loadIssue() const { return m_file.loadIssue(); }
    const std::optional<QString> &lastSaveError() const { return m_file.lastSaveError(); }
    void dismissIssues() { m_file.dismissIssues(); }

    /// Completes what has ended; at start, and when the clock was set.
    void evaluate();

    /// Without a label the duration names it.
    CountdownTimer startTimer(Seconds duration, const QString &label = {});
    void pause(const Uuid &id);
    void resume(const Uuid &id);
    void restart(const Uuid &id);
    Removed remove(const Uuid &id);
    Removed clearFinished();
    /// Restores what was removed, each at its place; one that ended meanwhile completes.
    void restore(const Removed &timers);
    /// Does nothing if it is not above 0 or is there already.
    void addPreset(Seconds seconds);
    void removePreset(Seconds seconds);

    /// Replaces a session that runs.
    void startPomodoro();
    void togglePomodoroPause();
    /// Goes on without a record; a focus that is skipped counts as one of the cycle.
    void skipPomodoroPhase();
    void stopPomodoro();
    void clearHistory();

    /// "0:59", "25:00", "1:00:00"; fractions are cut.
    static QString format(Seconds seconds);

Q_SIGNALS:
    void changed();
    void issuesChanged();

private:
    /// Calls the operation on the timer, if there is one.
    void change(const Uuid &id, void (CountdownTimer::*operation)(Date));
    Removed take(const std::function<bool(const CountdownTimer &)> &isWanted);
    void commit();
    std::optional<Completion> evaluatePomodoro(Date now);
    void publishActivities();
    void publish(const CountdownTimer &timer, LiveActivity activity,
                 std::function<void()> onCancel);
    void scheduleWake(Date now);

    Scheduler &m_scheduler;
    ActivityCenter &m_activity;
    const std::function<PomodoroConfig()> m_config;
    Snapshot m_state;
    StateFile<Snapshot> m_file;
    ScheduledTask m_wake;
};
BOOST_DESCRIBE_STRUCT(TimerCenter::Snapshot, (), (timers, presets, pomodoro, history))

} // namespace velmo
