#pragma once

#include <cstdint>

namespace velmo {

/// What the drag session under way offers, without taking part in it.
class DragPasteboard {
public:
    struct Contents {
        bool hasFiles = false;
        bool hasLinks = false;
        bool hasText = false;
        bool isUntold = false; ///< the source answers only the window that the drag is over
    };

    virtual ~DragPasteboard() = default;

    /// Grows each time a drag session starts.
    virtual std::uint64_t changeCount() const = 0;
    /// Empty until the source has answered; never waits for it.
    virtual Contents contents() const = 0;
};

} // namespace velmo
