#include "VelmoCore/Activity/LiveActivity.h"

#include <algorithm>

namespace velmo {

std::optional<double> LiveActivity::progressAt(Date date) const
{
    if (!countdown)
        return progress;
    const Seconds length = countdown->end - countdown->start;
    return length > 0s ? std::clamp((date - countdown->start) / length, 0.0, 1.0) : 1.0;
}

std::optional<Seconds> LiveActivity::remainingAt(Date date) const
{
    if (!countdown)
        return std::nullopt;
    return std::max(Seconds{0}, countdown->end - date);
}

} // namespace velmo
