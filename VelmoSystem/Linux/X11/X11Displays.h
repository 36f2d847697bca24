#pragma once

#include "VelmoSystem/Linux/ScreenCutouts.h"
#include "VelmoSystem/Ports/Displays.h"

#include <QRect>

class QScreen;

namespace velmo {

class X11Connection;

/// The screens as Qt reads them from RandR, and the one conversion between the server's pixels and
/// points. Qt keeps a screen's native origin and scales its size, so each screen has its own scale
/// around its own corner. Needs a QGuiApplication.
class X11Displays : public Displays {
    Q_OBJECT

public:
    X11Displays(X11Connection &connection, ScreenCutouts cutouts);

    std::vector<ScreenDescriptor> allDescriptors() const override;
    std::optional<DisplayID> screenUnderMouse() const override;
    std::array<int, 4> nativeFrame(DisplayID screen, const Rect &frame) const override;

    /// The lower left corner of a pixel.
    Point toPoints(const QPoint &pixel) const;
    /// By the screen that holds the rectangle's middle, else the nearest one.
    Rect toPoints(const QRect &pixels) const;

private:
    void watch(const QScreen *screen);
    void checkLater();

    X11Connection &m_connection;
    ScreenCutouts m_cutouts;
    std::vector<ScreenDescriptor> m_announced;
    bool m_isCheckPending = false;
};

} // namespace velmo
