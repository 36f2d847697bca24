#pragma once

#include <QTimeZone>

#include <cstdint>
#include <vector>

namespace velmo {

/// Turns local times of one zone into UTC and back, in whole seconds since 1970. Remembers the
/// zone's offsets, which `QTimeZone` takes microseconds to find.
class ZoneClock {
public:
    explicit ZoneClock(const QTimeZone &zone);

    const QTimeZone &zone() const { return m_zone; }

    std::int64_t localFromUtc(std::int64_t utc) { return utc + spanAt(utc).offset; }

    /// A time that the zone skips is read with the offset before the gap; of a time that comes
    /// twice this is the first.
    std::int64_t utcFromLocal(std::int64_t local);

private:
    /// Between two changes of the offset.
    struct Span {
        std::int64_t first; ///< UTC
        std::int64_t end;
        std::int64_t offset;
    };

    Span spanAt(std::int64_t utc);

    QTimeZone m_zone;
    std::vector<Span> m_spans; ///< sorted
    Span m_last{0, 0, 0};
};

} // namespace velmo
