#pragma once

#include "VelmoCore/Activity/ActivityEvent.h"
#include "VelmoCore/Activity/LiveActivity.h"
#include "VelmoCore/Storage/StateFile.h"

#include <QObject>

#include <functional>
#include <map>
#include <optional>
#include <vector>

namespace velmo {

/// The one place that knows what is going on and what has just happened: the live activities, the
/// short message on show and the history. Main thread only.
class ActivityCenter : public QObject {
    Q_OBJECT

public:
    enum class Presentation { standard, transientOnly, historyOnly };

    static constexpr std::size_t historyLimit = 100;
    static constexpr Seconds feedbackDuration = 2.4s;
    /// An event with files stays at least this long, so that they can be reached.
    static constexpr Seconds feedbackDurationWithFiles = 8s;

    /// Loads the history, or does so when its key comes. Without a path nothing is kept.
    ActivityCenter(const std::optional<QString> &path, const DataFiles &files, Scheduler &scheduler,
                   int retentionDays, Seconds duration = feedbackDuration);

    /// Sorted by priority, equal ones in order of arrival.
    const std::vector<LiveActivity> &live() const { return m_live; }
    const std::optional<ActivityEvent> &feedback() const { return m_feedback; }
    /// Newest first.
    const std::vector<ActivityEvent> &history() const { return m_history; }
    int retentionDays() const { return m_retentionDays; }

    /// Adds the activity, or updates the one with its id. `onCancel` runs on the main thread;
    /// without one an earlier handler stays.
    void upsert(const LiveActivity &activity, std::function<void()> onCancel = {});
    /// Removes the activity and posts `outcome`, if there is one.
    void finish(const QString &id, const std::optional<ActivityEvent> &outcome = std::nullopt);
    /// Removes the activity at once, then runs its handler.
    void cancel(const QString &id);

    void post(ActivityEvent event, Presentation presentation = Presentation::standard);
    /// Posts that something has failed just now, and why.
    void postFailure(const QString &title, const QString &source,
                     const std::optional<QString> &reason = std::nullopt);
    /// Clears the message on show; with an id, only if it is that one.
    void dismissFeedback(const std::optional<Uuid> &id = std::nullopt);

    /// Takes effect on the history at the next `prune`.
    void setRetentionDays(int days) { m_retentionDays = days; }
    void prune(Date now);
    void clearHistory();
    /// Saves at once, and returns when all of it is on disk.
    void flush() { m_file.flush(); }

Q_SIGNALS:
    void liveChanged();
    void feedbackChanged();
    void historyChanged();

private:
    void removeLive(const QString &id);
    void setLive(std::vector<LiveActivity> live);
    void show(const ActivityEvent &event);
    /// What of `history` stays: young enough, and no more than the limit.
    std::vector<ActivityEvent> pruned(std::vector<ActivityEvent> history, Date now) const;
    void setHistory(std::vector<ActivityEvent> history);

    Scheduler &m_scheduler;
    int m_retentionDays;
    Seconds m_feedbackDuration;
    std::vector<LiveActivity> m_live;
    std::optional<ActivityEvent> m_feedback;
    std::vector<ActivityEvent> m_history;
    StateFile<std::vector<ActivityEvent>> m_file;
    std::map<QString, std::function<void()>> m_cancelHandlers;
    ScheduledTask m_feedbackTask;
};

} // namespace velmo
