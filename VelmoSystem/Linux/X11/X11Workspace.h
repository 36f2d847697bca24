#pragma once

#include "VelmoSystem/Linux/X11/X11Connection.h"
#include "VelmoSystem/Ports/Workspace.h"

namespace velmo {

class X11Displays;

/// What the window manager publishes on the root window and on its clients (EWMH). Without one
/// there are no windows.
class X11Workspace : public Workspace {
    Q_OBJECT

public:
    X11Workspace(X11Connection &connection, const X11Displays &displays);

    std::vector<Window> windows() const override;

    /// The applications' windows on all desktops, from bottom to top. The server reports changes of
    /// their properties.
    const std::vector<xcb_window_t> &clients() const { return m_stack; }
    /// 0 while there is none.
    xcb_window_t activeWindow() const { return m_activeWindow; }

    /// To be called when the machine woke from sleep, which the X server doesn't report.
    void wake();

private:
    struct Client {
        std::uint32_t desktop = 0;
        bool isHidden = false;
        bool isFullscreen = false;

        bool operator==(const Client &) const = default;
    };

    void propertyChanged(const xcb_property_notify_event_t &event);
    void rootPropertyChanged(xcb_atom_t name);
    void readDesktop();
    void readActiveWindow();
    void readClients();
    Client readClient(xcb_window_t window) const;
    void watch(xcb_window_t window, bool withGeometry) const;
    std::uint32_t rootValue(xcb_atom_t name) const;
    void announce();

    X11Connection &m_connection;
    const X11Displays &m_displays;

    const xcb_atom_t m_supportingManager;
    const xcb_atom_t m_currentDesktop;
    const xcb_atom_t m_activeWindowName;
    const xcb_atom_t m_clientList;
    const xcb_atom_t m_stackingList;
    const xcb_atom_t m_state;
    const xcb_atom_t m_windowDesktop;

    std::uint32_t m_desktop = 0;
    std::uint32_t m_activeWindow = 0;
    std::vector<xcb_window_t> m_stack; ///< from bottom to top
    std::map<xcb_window_t, Client> m_clients;

    bool m_isManagerNew = false;
    bool m_isDesktopNew = false;
    bool m_isActiveWindowNew = false;
    bool m_areWindowsNew = false;
    std::vector<X11Connection::Subscription> m_subscriptions;
};

} // namespace velmo
