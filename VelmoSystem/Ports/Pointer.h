#pragma once

#include "VelmoCore/Foundation/Geometry.h"

#include <cstdint>
#include <functional>

namespace velmo {

/// The desktop's id of a top-level window, 0 for none.
using WindowID = std::uint32_t;

/// What the pointer does anywhere on the desktop, also over other applications' windows and during
/// their drags.
class Pointer {
public:
    enum class Change { moved, pressed, released };

    struct Sample {
        Change change = Change::moved;
        Point position;
        WindowID window = 0; ///< the top-level window under it; read for presses only
        bool isButtonDown = false;
    };

    virtual ~Pointer() = default;

    /// `observer` runs on the main thread for each change; moves that pile up come as one. Throws
    /// `LocalizedError` where the desktop doesn't let us watch.
    virtual void start(std::function<void(const Sample &)> observer) = 0;
    virtual Point location() const = 0;
};

} // namespace velmo
