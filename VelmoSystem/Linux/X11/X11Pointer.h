#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Linux/X11/X11Connection.h"
#include "VelmoSystem/Ports/Pointer.h"

namespace velmo {

class X11Displays;

/// Watches the pointer by XInput 2.2's raw events, which also come while another client holds a
/// grab. They carry no position, so each sample asks for it.
class X11Pointer : public Pointer {
public:
    /// Moves are reported at most this often: faster than any screen shows, slower than a gaming
    /// mouse.
    static constexpr Seconds moveInterval = 0.008s;

    X11Pointer(X11Connection &connection, const X11Displays &displays, Scheduler &scheduler);

    /// Presses and releases of the wheel aren't reported.
    void start(std::function<void(const Sample &)> observer) override;
    /// The last known one while the pointer is on another X screen.
    Point location() const override;

private:
    void handleRaw(const xcb_generic_event_t &event);
    void tellMove();
    void notify(Change change);

    X11Connection &m_connection;
    const X11Displays &m_displays;
    Scheduler &m_scheduler;
    std::function<void(const Sample &)> m_observer;
    bool m_hasMoved = false;
    ScheduledTask m_pause;
    mutable Point m_location;
    X11Connection::Subscription m_rawEvents;
    QObject m_context;
};

} // namespace velmo
