#pragma once

#include "VelmoSystem/Linux/X11/X11Connection.h"
#include "VelmoSystem/Ports/BrowserWindows.h"

#include <set>

namespace velmo {

class X11Workspace;

/// The window manager's clients (EWMH) that belong to a browser, and their `_NET_WM_NAME`.
class X11BrowserWindows : public BrowserWindows {
    Q_OBJECT

public:
    X11BrowserWindows(X11Connection &connection, const X11Workspace &workspace);

    /// Looks for windows, and follows them from then on.
    void start();
    std::vector<Window> windows() const override;

private:
    void propertyChanged(const xcb_property_notify_event_t &event);
    void followClients();
    void addBrowsers(const std::vector<xcb_window_t> &clients);
    void readTitles();
    void announce();

    X11Connection &m_connection;
    const X11Workspace &m_workspace;
    const xcb_atom_t m_title;
    std::set<xcb_window_t> m_clients; ///< those that have been looked at
    std::map<xcb_window_t, Window> m_browsers;
    std::set<xcb_window_t> m_renamed; ///< browsers whose title is to be read
    std::vector<Window> m_announced;
    X11Connection::Subscription m_properties;
};

} // namespace velmo
