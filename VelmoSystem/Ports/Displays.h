#pragma once

#include "VelmoCore/Notch/NotchGeometry.h"

#include <QObject>

#include <array>
#include <optional>
#include <vector>

namespace velmo {

/// The screens of the desktop. Points with y upward; adapters flip once, here.
class Displays : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    /// A descriptor a screen, the primary one first; empty without a screen.
    virtual std::vector<ScreenDescriptor> allDescriptors() const = 0;
    /// The first screen that holds the pointer.
    virtual std::optional<DisplayID> screenUnderMouse() const = 0;
    /// A rectangle as [x, y, width, height] in the display server's own pixels, y downward.
    virtual std::array<int, 4> nativeFrame(DisplayID screen, const Rect &frame) const = 0;

Q_SIGNALS:
    /// Screens came or went, or changed place, size or scale.
    void changed();
};

} // namespace velmo
