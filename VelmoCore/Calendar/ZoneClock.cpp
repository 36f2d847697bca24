#include "VelmoCore/Calendar/ZoneClock.h"

#include <algorithm>
#include <limits>

namespace velmo {

namespace {

using Limits = std::numeric_limits<std::int64_t>;

constexpr std::int64_t day = 86400;

} // namespace

ZoneClock::ZoneClock(const QTimeZone &zone) : m_zone(zone.isValid() ? zone : QTimeZone::utc())
{
    if (!m_zone.hasTransitions()) {
        const auto moment = QDateTime::fromSecsSinceEpoch(0, Qt::UTC);
        m_last = {Limits::min(), Limits::max(), m_zone.offsetFromUtc(moment)};
    }
}

ZoneClock::Span ZoneClock::spanAt(std::int64_t utc)
{
    if (utc >= m_last.first && utc < m_last.end)
        return m_last;
    auto place =
        std::upper_bound(m_spans.begin(), m_spans.end(), utc,
                         [](std::int64_t time, const Span &span) { return time < span.first; });
    if (place != m_spans.begin() && utc < std::prev(place)->end)
        return m_last = *std::prev(place);

    const QDateTime moment = QDateTime::fromSecsSinceEpoch(utc, Qt::UTC);
    const auto before = m_zone.previousTransition(moment.addSecs(1));
    const auto after = m_zone.nextTransition(moment);
    m_last = {before.atUtc.isValid() ? before.atUtc.toSecsSinceEpoch() : Limits::min(),
              after.atUtc.isValid() ? after.atUtc.toSecsSinceEpoch() : Limits::max(),
              m_zone.offsetFromUtc(moment)};
    m_spans.insert(place, m_last);
    return m_last;
}

std::int64_t ZoneClock::utcFromLocal(std::int64_t local)
{
    const Span after = spanAt(local + day);
    // No zone is more than a day from UTC, so a day on both sides shows every change that matters.
    if (local - day >= after.first)
        return local - after.offset;
    const Span before = spanAt(local - day);
    for (const std::int64_t offset : {before.offset, after.offset}) {
        if (spanAt(local - offset).offset == offset)
            return local - offset;
    }
    return local - before.offset;
}

} // namespace velmo
