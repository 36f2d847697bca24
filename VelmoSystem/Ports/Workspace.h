#pragma once

#include "VelmoCore/Foundation/Geometry.h"
#include "VelmoSystem/Ports/Pointer.h"

#include <QObject>

#include <vector>

namespace velmo {

/// The windows and desktops around the panel.
class Workspace : public QObject {
    Q_OBJECT

public:
    using QObject::QObject;

    struct Window {
        WindowID id = 0;
        Rect frame;
        bool isFullscreen = false;
    };

    /// The applications' windows that show on the present desktop, from bottom to top.
    virtual std::vector<Window> windows() const = 0;

Q_SIGNALS:
    void activeSpaceChanged();
    void frontApplicationChanged();
    /// Windows came, went, moved in the stack or went in or out of full screen.
    void windowsChanged();
    /// Another window manager has taken over; what it held of our windows is gone.
    void windowManagerChanged();
    /// The machine woke from sleep.
    void didWake();
};

} // namespace velmo
