#include "VelmoUI/Modules/Activity/ActivityPageModel.h"

#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoUI/App/AppServices.h"

#include <QLocale>

#include <algorithm>

namespace velmo {

namespace {

QString timeText(Date date, Date now)
{
    const QDateTime then = localDateTime(date);
    const qint64 daysAgo = then.date().daysTo(localDateTime(now).date());
    const QLocale locale;
    const QString time = locale.toString(then.time(), QLocale::ShortFormat);
    if (daysAgo == 0)
        return time;
    if (daysAgo == 1)
        return QStringLiteral("ontem, %1").arg(time);
    return QStringLiteral("%1, %2").arg(locale.toString(then.date(), QStringLiteral("d MMM")),
                                        time);
}

HistoryRow historyRow(const ActivityEvent &event, Date now)
{
    const QString time = timeText(event.date, now);
    const QString detail = event.detail.value_or(QString());
    const QString summary = detail.isEmpty() ? time : QStringLiteral("%1 · %2").arg(time, detail);
    return {uuidText(event.id),
            event.symbol,
            event.title,
            detail,
            time,
            QString::fromLatin1(boost::describe::enum_to_string(event.style, "")),
            event.fileURLs.has_value(),
            summary,
            QStringLiteral("%1, %2").arg(event.title, summary)};
}

} // namespace

ActivityPageModel::ActivityPageModel(AppServices &services)
    : m_services(services), m_live(services.activity, services.platform.scheduler)
{
    connect(&m_live, &LiveRows::changed, this, &ActivityPageModel::changed);
    connect(&services.activity, &ActivityCenter::historyChanged, this,
            &ActivityPageModel::updateRecent);
    updateRecent();
}

void ActivityPageModel::setWatched(bool watched)
{
    m_live.setWatched(watched);
    if (watched)
        updateRecent();
}

void ActivityPageModel::cancel(const QString &id)
{
    m_services.activity.cancel(id);
}

void ActivityPageModel::reveal(const QString &id)
{
    const auto &history = m_services.activity.history();
    const auto event = std::ranges::find(
        history, id, [](const ActivityEvent &candidate) { return uuidText(candidate.id); });
    if (event != history.end() && event->fileURLs)
        m_services.platform.fileViewer.reveal(*event->fileURLs);
}

void ActivityPageModel::clearHistory()
{
    m_services.activity.clearHistory();
}

void ActivityPageModel::updateRecent()
{
    const Date now = m_services.platform.scheduler.now();
    std::vector<HistoryRow> rows;
    for (const ActivityEvent &event : m_services.activity.history())
        rows.push_back(historyRow(event, now));
    m_recent.setRecords(rows);
    Q_EMIT changed();
}

} // namespace velmo
