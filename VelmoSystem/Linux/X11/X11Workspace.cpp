#include "VelmoSystem/Linux/X11/X11Workspace.h"

#include "VelmoSystem/Linux/X11/X11Displays.h"

#include <algorithm>

namespace velmo {

namespace {

constexpr std::uint32_t allDesktops = 0xFFFFFFFF;

} // namespace

X11Workspace::X11Workspace(X11Connection &connection, const X11Displays &displays)
    : m_connection(connection), m_displays(displays),
      m_supportingManager(connection.atom("_NET_SUPPORTING_WM_CHECK")),
      m_currentDesktop(connection.atom("_NET_CURRENT_DESKTOP")),
      m_activeWindowName(connection.atom("_NET_ACTIVE_WINDOW")),
      m_clientList(connection.atom("_NET_CLIENT_LIST")),
      m_stackingList(connection.atom("_NET_CLIENT_LIST_STACKING")),
      m_state(connection.atom("_NET_WM_STATE")), m_windowDesktop(connection.atom("_NET_WM_DESKTOP"))
{
    m_subscriptions = {
        connection.subscribe(XCB_PROPERTY_NOTIFY,
                             [this](const xcb_generic_event_t &event) {
                                 propertyChanged(
                                     reinterpret_cast<const xcb_property_notify_event_t &>(event));
                             }),
        connection.subscribe(XCB_CONFIGURE_NOTIFY, [this](const xcb_generic_event_t &event) {
            const auto &configure = reinterpret_cast<const xcb_configure_notify_event_t &>(event);
            if (m_clients.contains(configure.window))
                m_areWindowsNew = true;
        })};
    connect(&connection, &X11Connection::eventsHandled, this, &X11Workspace::announce);

    watch(connection.root(), false);
    readDesktop();
    readActiveWindow();
    readClients();
    m_isDesktopNew = m_isActiveWindowNew = m_areWindowsNew = false;
}

std::vector<Workspace::Window> X11Workspace::windows() const
{
    auto *server = m_connection.handle();
    std::vector<Window> windows;
    std::vector<std::pair<xcb_get_geometry_cookie_t, xcb_translate_coordinates_cookie_t>> requests;
    for (const xcb_window_t id : m_stack) {
        const Client &client = m_clients.at(id);
        if (client.isHidden || (client.desktop != m_desktop && client.desktop != allDesktops))
            continue;
        windows.push_back({.id = id, .isFullscreen = client.isFullscreen});
        requests.emplace_back(xcb_get_geometry(server, id),
                              xcb_translate_coordinates(server, id, m_connection.root(), 0, 0));
    }
    std::vector<Window> placed;
    for (std::size_t index = 0; index < windows.size(); ++index) {
        const auto &[geometryRequest, originRequest] = requests[index];
        const X11Reply<xcb_get_geometry_reply_t> geometry(
            xcb_get_geometry_reply(server, geometryRequest, nullptr));
        const X11Reply<xcb_translate_coordinates_reply_t> origin(
            xcb_translate_coordinates_reply(server, originRequest, nullptr));
        if (!geometry || !origin)
            continue; // it has just gone
        windows[index].frame = m_displays.toPoints(
            QRect(origin->dst_x, origin->dst_y, geometry->width, geometry->height));
        placed.push_back(windows[index]);
    }
    return placed;
}

void X11Workspace::wake()
{
    Q_EMIT didWake();
}

void X11Workspace::propertyChanged(const xcb_property_notify_event_t &event)
{
    if (event.window == m_connection.root()) {
        // A window manager says so once, maybe with the window id of an earlier one.
        if (event.atom == m_supportingManager)
            m_isManagerNew |= event.state == XCB_PROPERTY_NEW_VALUE;
        else
            rootPropertyChanged(event.atom);
        return;
    }
    const auto client = m_clients.find(event.window);
    if (client == m_clients.end() || (event.atom != m_state && event.atom != m_windowDesktop))
        return;
    const Client now = readClient(event.window);
    if (now == client->second)
        return;
    if (now.isFullscreen != client->second.isFullscreen)
        watch(event.window, now.isFullscreen);
    client->second = now;
    m_areWindowsNew = true;
}

void X11Workspace::rootPropertyChanged(xcb_atom_t name)
{
    if (name == m_currentDesktop)
        readDesktop();
    else if (name == m_activeWindowName)
        readActiveWindow();
    else if (name == m_clientList || name == m_stackingList)
        readClients();
}

void X11Workspace::readDesktop()
{
    const std::uint32_t desktop = rootValue(m_currentDesktop);
    m_isDesktopNew |= desktop != m_desktop;
    m_desktop = desktop;
}

void X11Workspace::readActiveWindow()
{
    const std::uint32_t window = rootValue(m_activeWindowName);
    m_isActiveWindowNew |= window != m_activeWindow;
    m_activeWindow = window;
}

void X11Workspace::readClients()
{
    auto stack = m_connection.property(m_connection.root(), m_stackingList);
    // Some window managers (xfwm4) don't report the stacking while there is one window.
    for (const xcb_window_t window : m_connection.property(m_connection.root(), m_clientList))
        if (std::ranges::find(stack, window) == stack.end())
            stack.push_back(window);
    if (stack == m_stack)
        return;
    std::erase_if(m_clients, [&](const auto &entry) {
        return std::ranges::find(stack, entry.first) == stack.end();
    });
    for (const xcb_window_t window : stack) {
        if (m_clients.contains(window))
            continue;
        watch(window, false); // before reading, so that no change falls between
        const Client &client = m_clients[window] = readClient(window);
        if (client.isFullscreen)
            watch(window, true);
    }
    m_stack = std::move(stack);
    m_areWindowsNew = true;
}

X11Workspace::Client X11Workspace::readClient(xcb_window_t window) const
{
    const auto states = m_connection.property(window, m_state);
    const auto has = [&](const char *name) {
        return std::ranges::find(states, m_connection.atom(name)) != states.end();
    };
    const auto desktop = m_connection.property(window, m_windowDesktop);
    return {.desktop = desktop.empty() ? allDesktops : desktop.front(),
            .isHidden = has("_NET_WM_STATE_HIDDEN"),
            .isFullscreen = has("_NET_WM_STATE_FULLSCREEN")};
}

// Where a window stands matters only while it is in full screen.
void X11Workspace::watch(xcb_window_t window, bool withGeometry) const
{
    std::uint32_t events = XCB_EVENT_MASK_PROPERTY_CHANGE;
    if (withGeometry)
        events |= XCB_EVENT_MASK_STRUCTURE_NOTIFY;
    xcb_change_window_attributes(m_connection.handle(), window, XCB_CW_EVENT_MASK, &events);
}

std::uint32_t X11Workspace::rootValue(xcb_atom_t name) const
{
    const auto values = m_connection.property(m_connection.root(), name);
    return values.empty() ? 0 : values.front();
}

void X11Workspace::announce()
{
    if (std::exchange(m_isManagerNew, false))
        Q_EMIT windowManagerChanged();
    if (std::exchange(m_isDesktopNew, false))
        Q_EMIT activeSpaceChanged();
    if (std::exchange(m_isActiveWindowNew, false))
        Q_EMIT frontApplicationChanged();
    if (std::exchange(m_areWindowsNew, false))
        Q_EMIT windowsChanged();
}

} // namespace velmo
