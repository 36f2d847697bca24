#pragma once

#include "VelmoCore/HotKeys/KeyCombo.h"
#include "VelmoSystem/Linux/X11/X11Connection.h"
#include "VelmoSystem/Linux/X11/X11Displays.h"

#include "tests/support/Printers.h"
#include "tests/support/XServer.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace velmo {

/// What all tests of the adapters share: a virtual X server and its present window manager.
extern XServer *server;
extern QProcess *manager;

inline constexpr std::uint32_t keyN = 45;
inline const KeyCombo altN{keyN, KeyCombo::option};

class X11Test : public testing::Test {
protected:
    ~X11Test() override
    {
        for (const xcb_window_t window : m_windows)
            xcb_destroy_window(server->client(), window);
        xcb_flush(server->client());
    }

    xcb_window_t makeWindow(const QRect &frame, bool isManaged = true)
    {
        return m_windows.emplace_back(server->makeWindow(frame, isManaged));
    }

    /// A window of another application that the window manager has given the keyboard.
    xcb_window_t makeFocusedWindow(const QRect &frame)
    {
        const xcb_window_t window = makeWindow(frame);
        EXPECT_TRUE(eventually([&] {
            const auto clients = server->property(server->root(), "_NET_CLIENT_LIST");
            return std::ranges::find(clients, window) != clients.end();
        }));
        server->tellManager(window, "_NET_ACTIVE_WINDOW", {2}); // as a pager does
        EXPECT_TRUE(eventually([&] {
            const auto active = server->property(server->root(), "_NET_ACTIVE_WINDOW");
            return !active.empty() && active.front() == window && server->focusedWindow() == window;
        }));
        return window;
    }

    /// Waits until the server has heard all that the adapters asked so far.
    void settle() { EXPECT_TRUE(connection.pointerPosition()); }

    X11Connection connection;
    X11Displays displays{connection, ScreenCutouts({}, {})};

private:
    std::vector<xcb_window_t> m_windows;
};

} // namespace velmo
