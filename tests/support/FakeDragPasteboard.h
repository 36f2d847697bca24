#pragma once

#include "VelmoSystem/Ports/DragPasteboard.h"

namespace velmo {

class FakeDragPasteboard : public DragPasteboard {
public:
    std::uint64_t changeCount() const override { return count; }
    Contents contents() const override { return offered; }

    /// A drag session starts; what it offers is reported at once.
    void begin(Contents what)
    {
        ++count;
        offered = what;
    }

    std::uint64_t count = 0;
    Contents offered;
};

} // namespace velmo
