#pragma once

#include "VelmoSystem/Ports/Pointer.h"

#include <functional>
#include <variant>

namespace velmo {

/// Turns what the pointer does into the four events the panels live by.
class MouseEventMonitor {
public:
    struct Moved {
        Point point;
    };
    struct Down {
        Point point;
        WindowID window = 0;
    };
    /// Moved with a button held.
    struct Dragged {
        Point point;
    };
    struct Up {
        Point point;
    };
    using Event = std::variant<Moved, Down, Dragged, Up>;

    explicit MouseEventMonitor(Pointer &pointer);

    /// Logs where the desktop doesn't let us watch; the panels then open by key and command only.
    void start(std::function<void(const Event &)> handler);

private:
    Pointer &m_pointer;
};

} // namespace velmo
