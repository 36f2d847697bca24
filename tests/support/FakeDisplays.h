#pragma once

#include "VelmoSystem/Ports/Displays.h"

#include <cmath>

namespace velmo {

/// Screens as a test lays them out, one pixel a point.
class FakeDisplays : public Displays {
public:
    explicit FakeDisplays(std::vector<ScreenDescriptor> screens = {})
        : descriptors(std::move(screens))
    {
    }

    std::vector<ScreenDescriptor> allDescriptors() const override { return descriptors; }
    std::optional<DisplayID> screenUnderMouse() const override
    {
        for (const ScreenDescriptor &screen : descriptors)
            if (screen.frame.contains(mouse))
                return screen.displayID;
        return std::nullopt;
    }
    std::array<int, 4> nativeFrame(DisplayID, const Rect &frame) const override
    {
        return {int(std::lround(frame.minX())), int(std::lround(-frame.maxY())),
                int(std::lround(frame.width)), int(std::lround(frame.height))};
    }

    /// Replaces the screens and says so.
    void arrange(std::vector<ScreenDescriptor> screens)
    {
        descriptors = std::move(screens);
        Q_EMIT changed();
    }

    std::vector<ScreenDescriptor> descriptors;
    Point mouse;
};

} // namespace velmo
