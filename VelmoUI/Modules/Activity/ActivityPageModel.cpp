#include "VelmoUI/Modules/Activity/ActivityPageModel.h"

#include "VelmoCore/Foundation/Words.h"
#include "VelmoSystem/Ports/FileViewer.h"

#include <algorithm>

namespace velmo {

namespace {

HistoryRow historyRow(const ActivityEvent &event, Date now)
{
    const QString time = Words::timeOrDayAndTime(event.date, now);
    const QString detail = event.detail.value_or(QString());
    const QString summary = detail.isEmpty() ? time : QStringLiteral("%1 · %2").arg(time, detail);
    return {uuidText(event.id),
            event.symbol,
            event.title,
            detail,
            time,
            Feedback::of(event.style),
            event.fileURLs.has_value(),
            summary,
            QStringLiteral("%1, %2").arg(event.title, summary)};
}

} // namespace

ActivityPageModel::ActivityPageModel(ActivityCenter &activity, FileViewer &fileViewer,
                                     Scheduler &scheduler)
    : m_activity(activity), m_fileViewer(fileViewer), m_scheduler(scheduler),
      m_live(activity, scheduler)
{
    connect(&m_live, &LiveRows::changed, this, &ActivityPageModel::changed);
    connect(&activity, &ActivityCenter::historyChanged, this, &ActivityPageModel::updateRecent);
    updateRecent();
}

void ActivityPageModel::watch(bool isWatched)
{
    m_live.setWatched(isWatched); // rows that count time run only then
    if (isWatched)
        updateRecent();
}

void ActivityPageModel::cancel(const QString &id)
{
    m_activity.cancel(id);
}

void ActivityPageModel::reveal(const QString &id)
{
    const auto &history = m_activity.history();
    const auto event = std::ranges::find(
        history, id, [](const ActivityEvent &candidate) { return uuidText(candidate.id); });
    if (event != history.end() && event->fileURLs)
        m_fileViewer.reveal(*event->fileURLs);
}

void ActivityPageModel::clearHistory()
{
    m_activity.clearHistory();
}

void ActivityPageModel::updateRecent()
{
    const Date now = m_scheduler.now();
    std::vector<HistoryRow> rows;
    for (const ActivityEvent &event : m_activity.history())
        rows.push_back(historyRow(event, now));
    m_recent.setRecords(rows);
    Q_EMIT changed();
}

} // namespace velmo
