#include <xcb/damage.h>
#include <xcb/xcb.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <memory>
#include <stdexcept>
#include <string>
#include <unistd.h>
#include <vector>

// FirstFrame FILE COMMAND...: starts a program on a desktop at rest and writes to the file (a pipe,
// perhaps) the milliseconds from its exec to the first change of the screen, which is the same
// question to every toolkit. It then stays, and the session bus it may be run under with it.

namespace {

template <class T>
using Reply = std::unique_ptr<T, decltype(&std::free)>;

class Screen {
public:
    Screen()
    {
        m_connection = xcb_connect(nullptr, nullptr);
        if (xcb_connection_has_error(m_connection))
            throw std::runtime_error("no display");
        m_screen = xcb_setup_roots_iterator(xcb_get_setup(m_connection)).data;

        const auto *extension = xcb_get_extension_data(m_connection, &xcb_damage_id);
        if (!extension || !extension->present)
            throw std::runtime_error("the display has no DAMAGE");
        m_damageEvent = extension->first_event + XCB_DAMAGE_NOTIFY;
        std::free(xcb_damage_query_version_reply(
            m_connection, xcb_damage_query_version(m_connection, 1, 1), nullptr));
        xcb_damage_create(m_connection, xcb_generate_id(m_connection), m_screen->root,
                          XCB_DAMAGE_REPORT_LEVEL_RAW_RECTANGLES);
        m_before = pixels(0, 0, m_screen->width_in_pixels, m_screen->height_in_pixels);
    }

    /// Returns once a pixel differs from what it was at construction.
    void waitForChange()
    {
        while (
            const Reply<xcb_generic_event_t> event{xcb_wait_for_event(m_connection), std::free}) {
            if ((event->response_type & 0x7f) != m_damageEvent)
                continue;
            const auto &area = reinterpret_cast<xcb_damage_notify_event_t *>(event.get())->area;
            if (differs(area))
                return;
        }
        throw std::runtime_error("the display went away");
    }

private:
    std::vector<std::uint32_t> pixels(int x, int y, int width, int height) const
    {
        const auto cookie = xcb_get_image(m_connection, XCB_IMAGE_FORMAT_Z_PIXMAP, m_screen->root,
                                          x, y, width, height, ~0U);
        const Reply<xcb_get_image_reply_t> reply(xcb_get_image_reply(m_connection, cookie, nullptr),
                                                 std::free);
        if (!reply)
            throw std::runtime_error("the screen can't be read");
        std::vector<std::uint32_t> result(static_cast<std::size_t>(width) * height);
        std::memcpy(result.data(), xcb_get_image_data(reply.get()), result.size() * 4);
        return result;
    }

    bool differs(const xcb_rectangle_t &area) const
    {
        const auto now = pixels(area.x, area.y, area.width, area.height);
        for (int row = 0; row < area.height; ++row) {
            const std::size_t start = (area.y + row) * std::size_t{m_screen->width_in_pixels};
            if (std::memcmp(&now[std::size_t(row) * area.width], &m_before[start + area.x],
                            area.width * 4U) != 0)
                return true;
        }
        return false;
    }

    xcb_connection_t *m_connection = nullptr;
    xcb_screen_t *m_screen = nullptr;
    int m_damageEvent = 0;
    std::vector<std::uint32_t> m_before;
};

} // namespace

int main(int argc, char **argv)
try {
    if (argc < 3)
        throw std::runtime_error("FILE COMMAND...");
    Screen screen;
    const auto start = std::chrono::steady_clock::now();
    const pid_t child = fork();
    if (child == 0) {
        execvp(argv[2], argv + 2);
        _exit(127);
    }
    screen.waitForChange();
    const std::chrono::duration<double, std::milli> elapsed =
        std::chrono::steady_clock::now() - start;
    std::ofstream(argv[1]) << elapsed.count() << std::endl;
    for (;;)
        pause();
} catch (const std::exception &error) {
    std::fprintf(stderr, "FirstFrame: %s\n", error.what());
    return 1;
}
