#include "VelmoUI/Modules/Frame/LiveRows.h"

#include "VelmoCore/Foundation/Words.h"

#include <algorithm>
#include <cmath>

namespace velmo {

namespace {

/// The time that the row counts: what is left, or what has passed.
std::optional<Seconds> countedTime(const LiveActivity &activity, Date now)
{
    if (const auto remaining = activity.remainingAt(now))
        return *remaining;
    if (activity.startedAt)
        return std::max(now - *activity.startedAt, Seconds{0});
    return std::nullopt;
}

/// The time as it is shown: what is left counts until its last moment is over.
std::optional<Seconds> shownTime(const LiveActivity &activity, Date now)
{
    const auto time = countedTime(activity, now);
    return time && activity.countdown ? Seconds(std::ceil(time->count())) : time;
}

/// The value in words, so that it is not mistaken for the time of day.
QString meaning(const LiveActivity &activity, const LiveRow &row)
{
    const QString time = activity.countdown   ? QStringLiteral("faltam ") + row.value
                         : activity.startedAt ? QStringLiteral("há ") + row.value
                                              : row.value.toLower();
    if (activity.source != QStringLiteral("timers"))
        return time;
    const QString kind = activity.symbol == QStringLiteral("timer") ? QStringLiteral("Timer")
                                                                    : QStringLiteral("Pomodoro");
    return kind == row.title ? time : QStringLiteral("%1 · %2").arg(kind, time);
}

LiveRow row(const LiveActivity &activity, Date now)
{
    LiveRow row{activity.id,
                activity.symbol,
                activity.title,
                activity.detail.value_or(QString()),
                {},
                activity.progressAt(now).value_or(-1),
                activity.isCancellable,
                {},
                {},
                {}};
    if (const auto time = shownTime(activity, now)) {
        row.value = Words::clock(*time);
        row.shortTime = Words::shortClock(*time);
    } else if (row.progress >= 0) {
        row.value = Words::percent(int(std::floor(row.progress * 100)));
    } else if (activity.source == QStringLiteral("timers")) {
        row.value = QStringLiteral("Pausado");
    }
    row.meaning = meaning(activity, row);
    row.spoken =
        row.value.isEmpty() ? row.title : QStringLiteral("%1, %2").arg(row.title, row.value);
    return row;
}

/// How long until the row's text changes.
Seconds untilNextSecond(const LiveActivity &activity, Date now)
{
    constexpr double leeway = 0.001;
    const double counted = countedTime(activity, now)->count();
    const double fraction = counted - std::floor(counted);
    return Seconds((activity.countdown ? fraction : 1 - fraction) + leeway);
}

} // namespace

LiveRows::LiveRows(ActivityCenter &activity, Scheduler &scheduler)
    : m_activity(activity), m_scheduler(scheduler)
{
    connect(&activity, &ActivityCenter::liveChanged, this, &LiveRows::update);
    update();
}

void LiveRows::setWatched(bool watched)
{
    if (watched == m_isWatched)
        return;
    m_isWatched = watched;
    update();
}

void LiveRows::update()
{
    const Date now = m_scheduler.now();
    std::vector<LiveRow> rows;
    std::optional<Seconds> next;
    for (const LiveActivity &activity : m_activity.live()) {
        rows.push_back(row(activity, now));
        const bool counts =
            countedTime(activity, now) && !(activity.countdown && activity.countdown->end <= now);
        if (counts && !next)
            next = untilNextSecond(activity, now);
    }
    m_nextSecond.cancel();
    if (next && m_isWatched)
        m_nextSecond = m_scheduler.after(*next, [this] { update(); });
    if (rows == m_model.records())
        return;
    m_model.setRecords(rows);
    Q_EMIT changed();
}

} // namespace velmo
