#include "VelmoSystem/Linux/X11/X11BrowserWindows.h"

#include "VelmoSystem/Linux/Desktop/Browsers.h"
#include "VelmoSystem/Linux/X11/X11WindowTexts.h"
#include "VelmoSystem/Linux/X11/X11Workspace.h"

#include <algorithm>

namespace velmo {

X11BrowserWindows::X11BrowserWindows(X11Connection &connection, const X11Workspace &workspace)
    : m_connection(connection), m_workspace(workspace), m_title(connection.atom("_NET_WM_NAME"))
{
}

void X11BrowserWindows::start()
{
    m_properties =
        m_connection.subscribe(XCB_PROPERTY_NOTIFY, [this](const xcb_generic_event_t &event) {
            propertyChanged(reinterpret_cast<const xcb_property_notify_event_t &>(event));
        });
    connect(&m_connection, &X11Connection::eventsHandled, this, &X11BrowserWindows::readTitles);
    connect(&m_workspace, &Workspace::windowsChanged, this, &X11BrowserWindows::followClients);
    connect(&m_workspace, &Workspace::frontApplicationChanged, this, &X11BrowserWindows::announce);
    followClients();
}

std::vector<BrowserWindows::Window> X11BrowserWindows::windows() const
{
    std::vector<Window> windows;
    for (const auto &[id, window] : m_browsers) {
        windows.push_back(window);
        windows.back().isFront = id == m_workspace.activeWindow();
    }
    return windows;
}

void X11BrowserWindows::propertyChanged(const xcb_property_notify_event_t &event)
{
    if (event.atom == m_title && m_browsers.contains(event.window))
        m_renamed.insert(event.window);
}

void X11BrowserWindows::followClients()
{
    std::set<xcb_window_t> clients(m_workspace.clients().begin(), m_workspace.clients().end());
    std::vector<xcb_window_t> added;
    std::ranges::set_difference(clients, m_clients, std::back_inserter(added));
    const auto isGone = [&](xcb_window_t window) { return !clients.contains(window); };
    std::erase_if(m_browsers, [&](const auto &entry) { return isGone(entry.first); });
    std::erase_if(m_renamed, isGone);
    m_clients = std::move(clients);
    addBrowsers(added);
    readTitles();
    announce();
}

void X11BrowserWindows::addBrowsers(const std::vector<xcb_window_t> &clients)
{
    auto *server = m_connection.handle();
    const xcb_atom_t process = m_connection.atom("_NET_WM_PID");
    std::vector<std::pair<X11WindowNames, xcb_get_property_cookie_t>> requests;
    requests.reserve(clients.size());
    for (const xcb_window_t window : clients)
        requests.emplace_back(
            X11WindowNames(m_connection, window),
            xcb_get_property(server, false, window, process, XCB_ATOM_CARDINAL, 0, 1));
    for (std::size_t index = 0; index < clients.size(); ++index) {
        const auto &[names, pidRequest] = requests[index];
        const X11Reply<xcb_get_property_reply_t> pid(
            xcb_get_property_reply(server, pidRequest, nullptr));
        QString browser;
        for (const QString &name : names.read()) {
            if (browser.isEmpty())
                browser = Browsers::known(name);
        }
        if (browser.isEmpty())
            continue;
        Window &window = m_browsers[clients[index]];
        window.browser = browser;
        if (pid && pid->format == 32 && pid->value_len == 1)
            window.pid = *static_cast<const std::uint32_t *>(xcb_get_property_value(pid.get()));
        m_renamed.insert(clients[index]);
    }
}

void X11BrowserWindows::readTitles()
{
    if (m_renamed.empty())
        return;
    std::vector<std::pair<xcb_window_t, X11WindowText>> requests;
    for (const xcb_window_t window : std::exchange(m_renamed, {}))
        requests.emplace_back(window, X11WindowText(m_connection, window, m_title));
    for (const auto &[id, request] : requests) {
        Window &window = m_browsers.at(id);
        window.title = Browsers::pageTitle(window.browser, request.read().join(u' '));
    }
    announce();
}

void X11BrowserWindows::announce()
{
    auto now = windows();
    if (now == m_announced)
        return;
    m_announced = std::move(now);
    Q_EMIT changed();
}

} // namespace velmo
