#pragma once

#include "VelmoCore/Foundation/Date.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <utility>

namespace velmo {

/// The bodies that wait, by deadline; equal deadlines run in order of insertion. It knows no clock:
/// its owner says what time it is.
class TimerQueue {
public:
    /// `deadlineChanged` runs when the earliest deadline may have moved.
    explicit TimerQueue(std::function<void()> deadlineChanged);

    std::uint64_t insert(Seconds deadline, std::function<void()> body);
    void remove(std::uint64_t id);
    bool contains(std::uint64_t id) const;
    std::optional<Seconds> earliest() const;
    std::size_t size() const { return m_bodies.size(); }

    /// Takes out and runs the earliest body due at `time`. False if none is.
    bool runNext(Seconds time);

private:
    using Key = std::pair<Seconds, std::uint64_t>;

    std::function<void()> m_deadlineChanged;
    std::map<Key, std::function<void()>> m_bodies;
    std::map<std::uint64_t, Seconds> m_deadlines;
    std::uint64_t m_nextID = 1;
};

} // namespace velmo
