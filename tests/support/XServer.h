#pragma once

#include <QByteArray>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRect>

#include <xcb/xcb.h>

#include <chrono>
#include <functional>
#include <memory>
#include <vector>

namespace velmo {

/// A virtual X server of the test's own on a free display, with a client that moves its pointer and
/// presses its keys as a user would. Ends with the process that it was made in.
class XServer {
public:
    /// Aborts the test where the server doesn't start. `screen` is width x height x depth;
    /// programs get `environment`, with the display.
    explicit XServer(const QByteArray &screen = "1600x900x24",
                     const QProcessEnvironment &environment = {
                         QProcessEnvironment::InheritFromParent});
    ~XServer();

    /// As DISPLAY has it.
    const QByteArray &display() const { return m_display; }
    xcb_connection_t *client() const { return m_client; }
    xcb_window_t root() const { return m_screen->root; }

    /// Starts a program on the display. It ends with the server.
    QProcess &run(const QString &program, const QStringList &arguments = {});
    /// Starts a window manager and waits until it manages.
    QProcess &runWindowManager(const QString &program = u"openbox"_qs,
                               const QStringList &arguments = {});

    void movePointer(int x, int y);
    void setButton(int button, bool isDown);
    void click(int x, int y);
    void setKey(xcb_keysym_t keysym, bool isDown);
    /// Holds the modifiers while it presses and releases the key.
    void typeKey(xcb_keysym_t keysym, const std::vector<xcb_keysym_t> &modifiers = {});
    /// The key at a place of the keyboard, whatever it types.
    void typeKeyAt(xcb_keycode_t place, const std::vector<xcb_keysym_t> &modifiers = {});
    /// Gives the keyboard that layout, as setxkbmap has it.
    void setLayout(const QString &layout);

    xcb_keycode_t keycode(xcb_keysym_t keysym) const;
    xcb_atom_t atom(const QByteArray &name) const;
    std::vector<std::uint32_t> property(xcb_window_t window, const QByteArray &name) const;
    void setProperty(xcb_window_t window, const QByteArray &name, xcb_atom_t type,
                     const std::vector<std::uint32_t> &values);
    /// Asks the window manager for something about a window, as pagers do (EWMH).
    void tellManager(xcb_window_t window, const QByteArray &message,
                     const std::vector<std::uint32_t> &values);
    /// A mapped top-level window of the client without a frame around it, which hears of keys and
    /// button presses.
    xcb_window_t makeWindow(const QRect &frame, bool isManaged = true);
    xcb_window_t focusedWindow() const;
    /// The screen row by row, each pixel as 0xRRGGBB.
    std::vector<std::uint32_t> pixels(const QRect &area) const;
    /// The client's events so far of a type.
    int takeEvents(std::uint8_t responseType);

private:
    void fake(std::uint8_t type, std::uint8_t detail, int x = 0, int y = 0);

    QProcess m_server;
    QProcessEnvironment m_environment;
    QByteArray m_display;
    xcb_connection_t *m_client = nullptr;
    xcb_screen_t *m_screen = nullptr;
    std::vector<std::uint8_t> m_events;
    std::vector<std::unique_ptr<QProcess>> m_programs;
};

/// Runs the event loop until `condition` holds; false if it doesn't within `patience`, which is
/// longer than anything takes that does happen.
bool eventually(const std::function<bool()> &condition,
                std::chrono::milliseconds patience = std::chrono::seconds(20));

} // namespace velmo
