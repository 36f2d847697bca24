#include "VelmoCore/Activity/ActivityCenter.h"

#include <algorithm>

namespace velmo {

namespace {

constexpr Seconds saveDelay = 0.5s;

} // namespace

ActivityCenter::ActivityCenter(const std::optional<QString> &path, const DataFiles &files,
                               Scheduler &scheduler, int retentionDays, Seconds duration)
    : m_scheduler(scheduler), m_retentionDays(retentionDays), m_feedbackDuration(duration),
      m_file(path, files, scheduler,
             {QStringLiteral("Atividade"), QStringLiteral("histórico de atividade")},
             [this] { return m_history; })
{
    m_file.load([this](std::vector<ActivityEvent> kept) {
        auto history = m_history;
        history.insert(history.end(), std::make_move_iterator(kept.begin()),
                       std::make_move_iterator(kept.end()));
        setHistory(pruned(std::move(history), m_scheduler.now()));
    });
}

void ActivityCenter::upsert(const LiveActivity &activity, std::function<void()> onCancel)
{
    if (onCancel)
        m_cancelHandlers.insert_or_assign(activity.id, std::move(onCancel));
    auto live = m_live;
    const auto place = std::ranges::find(live, activity.id, &LiveActivity::id);
    if (place == live.end())
        live.push_back(activity);
    else
        *place = activity;
    std::ranges::stable_sort(live, std::ranges::greater(), &LiveActivity::priority);
    setLive(std::move(live));
}

void ActivityCenter::finish(const QString &id, const std::optional<ActivityEvent> &outcome)
{
    const auto handler = m_cancelHandlers.extract(id);
    removeLive(id);
    if (outcome)
        post(*outcome);
}

void ActivityCenter::cancel(const QString &id)
{
    const auto handler = m_cancelHandlers.extract(id);
    removeLive(id);
    if (handler)
        handler.mapped()();
}

void ActivityCenter::post(ActivityEvent event, Presentation presentation)
{
    if (event.fileURLs && event.fileURLs->empty())
        event.fileURLs.reset();
    if (presentation != Presentation::historyOnly)
        show(event);
    if (presentation == Presentation::transientOnly)
        return;
    auto history = m_history;
    history.insert(history.begin(), std::move(event));
    setHistory(pruned(std::move(history), m_scheduler.now()));
    m_file.saveAfter(saveDelay);
}

void ActivityCenter::postFailure(const QString &title, const QString &source,
                                 const std::optional<QString> &reason)
{
    post(ActivityEvent::make(m_scheduler.now(), QStringLiteral("exclamationmark.triangle.fill"),
                             title, FeedbackStyle::error, source, reason));
}

void ActivityCenter::dismissFeedback(const std::optional<Uuid> &id)
{
    if (!m_feedback || (id && *id != m_feedback->id))
        return;
    m_feedbackTask.cancel();
    m_feedback.reset();
    Q_EMIT feedbackChanged();
}

void ActivityCenter::prune(Date now)
{
    setHistory(pruned(m_history, now));
}

void ActivityCenter::clearHistory()
{
    setHistory({});
    m_file.saveAfter(saveDelay);
}

void ActivityCenter::removeLive(const QString &id)
{
    auto live = m_live;
    std::erase_if(live, [&](const LiveActivity &activity) { return activity.id == id; });
    setLive(std::move(live));
}

void ActivityCenter::setLive(std::vector<LiveActivity> live)
{
    if (live == m_live)
        return;
    m_live = std::move(live);
    Q_EMIT liveChanged();
}

void ActivityCenter::show(const ActivityEvent &event)
{
    const Seconds duration = event.fileURLs
                                 ? std::max(m_feedbackDuration, feedbackDurationWithFiles)
                                 : m_feedbackDuration;
    m_feedbackTask = m_scheduler.after(duration, [this, id = event.id] { dismissFeedback(id); });
    if (event == m_feedback)
        return;
    m_feedback = event;
    Q_EMIT feedbackChanged();
}

std::vector<ActivityEvent> ActivityCenter::pruned(std::vector<ActivityEvent> history,
                                                  Date now) const
{
    const Date cutOff = now - std::chrono::days{std::max(m_retentionDays, 0)};
    std::erase_if(history, [&](const ActivityEvent &event) { return event.date < cutOff; });
    if (history.size() > historyLimit)
        history.resize(historyLimit);
    return history;
}

void ActivityCenter::setHistory(std::vector<ActivityEvent> history)
{
    if (history == m_history)
        return;
    m_history = std::move(history);
    Q_EMIT historyChanged();
}

} // namespace velmo
