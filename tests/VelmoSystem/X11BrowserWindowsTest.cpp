#include "VelmoSystem/Linux/X11/X11BrowserWindows.h"

#include "VelmoSystem/Linux/Desktop/Browsers.h"
#include "VelmoSystem/Linux/X11/X11Workspace.h"

#include "tests/VelmoSystem/X11Test.h"

namespace velmo {
namespace {

class X11BrowserWindowsTest : public X11Test {
protected:
    X11BrowserWindowsTest()
    {
        QObject::connect(&browsers, &BrowserWindows::changed, [this] { ++changes; });
    }

    ~X11BrowserWindowsTest() override { close(); }

    static void setText(xcb_window_t window, const char *property, const QByteArray &text)
    {
        xcb_change_property(server->client(), XCB_PROP_MODE_REPLACE, window, server->atom(property),
                            XCB_ATOM_STRING, 8, std::uint32_t(text.size()), text.constData());
        xcb_flush(server->client());
    }
    /// A window that says what it is before it shows, as windows do.
    xcb_window_t open(const QByteArray &windowClass, const QByteArray &title)
    {
        auto *client = server->client();
        const xcb_window_t window = m_windows.emplace_back(xcb_generate_id(client));
        xcb_create_window(client, XCB_COPY_FROM_PARENT, window, server->root(), 0, 0, 200, 100, 0,
                          XCB_WINDOW_CLASS_INPUT_OUTPUT, XCB_COPY_FROM_PARENT, 0, nullptr);
        setText(window, "WM_CLASS", windowClass);
        setText(window, "_NET_WM_NAME", title);
        server->setProperty(window, "_NET_WM_PID", XCB_ATOM_CARDINAL, {4711});
        xcb_map_window(client, window);
        EXPECT_TRUE(eventually([&] {
            const auto clients = server->property(server->root(), "_NET_CLIENT_LIST");
            return std::ranges::find(clients, window) != clients.end();
        }));
        bringToFront(window);
        return window;
    }
    static void bringToFront(xcb_window_t window)
    {
        server->tellManager(window, "_NET_ACTIVE_WINDOW", {2});
    }
    void close()
    {
        for (const xcb_window_t window : std::exchange(m_windows, {}))
            xcb_destroy_window(server->client(), window);
        xcb_flush(server->client());
    }
    /// The titles of all windows, the one in front with a star.
    std::vector<QString> titles() const
    {
        std::vector<QString> all;
        for (const auto &window : browsers.windows())
            all.push_back(window.title + (window.isFront ? u"*"_qs : QString()));
        std::ranges::sort(all);
        return all;
    }
    bool shows(const std::vector<QString> &expected)
    {
        return eventually([&] { return titles() == expected; });
    }

    X11Workspace workspace{connection, displays};
    X11BrowserWindows browsers{connection, workspace};
    int changes = 0;

private:
    std::vector<xcb_window_t> m_windows;
};

TEST_F(X11BrowserWindowsTest, FollowsTitlesAndTheFront)
{
    const xcb_window_t chromium =
        open(QByteArray("chromium (/a)\0Chromium", 22), "Reunião | Microsoft Teams - Chromium");
    browsers.start();
    ASSERT_TRUE(shows({u"Reunião | Microsoft Teams*"_qs}));
    EXPECT_EQ(browsers.windows()[0].browser, u"chromium");
    EXPECT_EQ(browsers.windows()[0].pid, 4711);
    setText(chromium, "_NET_WM_NAME", "Chat - Chromium");
    EXPECT_TRUE(shows({u"Chat*"_qs}));

    const xcb_window_t editor = open(QByteArray("gedit\0Gedit", 11), "Meet - abc-defg-hij");
    EXPECT_TRUE(shows({u"Chat"_qs})) << "behind the editor";
    const int before = changes;
    setText(editor, "_NET_WM_NAME", "Google Meet - abc-defg-hij");
    server->setProperty(chromium, "_NET_WM_USER_TIME", XCB_ATOM_CARDINAL, {77});
    EXPECT_FALSE(eventually([&] { return changes != before; }, 50ms));
    open(QByteArray("Navigator\0firefox-esr", 21), "Meet – abc-defg-hij — Mozilla Firefox");
    EXPECT_TRUE(shows({u"Chat"_qs, u"Meet – abc-defg-hij*"_qs}));
    bringToFront(editor);
    EXPECT_TRUE(shows({u"Chat"_qs, u"Meet – abc-defg-hij"_qs}));
    close();
    EXPECT_TRUE(shows({}));
}

TEST(Browsers, AreKnownByWhatTheyCallThemselves)
{
    for (const auto &[name, browser] : {std::pair(u"Google-chrome"_qs, u"google-chrome"_qs),
                                        {u"chrome"_qs, u"google-chrome"_qs},
                                        {u"Chromium input"_qs, u"chromium"_qs},
                                        {u"org.mozilla.firefox"_qs, u"firefox"_qs},
                                        {u"Brave-browser"_qs, u"brave"_qs},
                                        {u"msedge"_qs, u"edge"_qs},
                                        {u"Vivaldi-stable"_qs, u"vivaldi"_qs},
                                        {u"Opera"_qs, u"opera"_qs},
                                        {u"org.gnome.Epiphany"_qs, u"epiphany"_qs},
                                        {u"parec"_qs, QString()}})
        EXPECT_EQ(Browsers::known(name), browser) << qPrintable(name);
    for (const auto &[browser, title, page] :
         {std::tuple(u"chromium"_qs, u"Meet - abc-defg-hij - Chromium"_qs,
                     u"Meet - abc-defg-hij"_qs),
          {u"chromium"_qs, u"Meet - abc-defg-hij"_qs, u"Meet - abc-defg-hij"_qs},
          {u"firefox"_qs, u"a - b — Mozilla Firefox (navegação privativa)"_qs, u"a - b"_qs},
          {u"edge"_qs, u"Zoom - Microsoft\u200b Edge"_qs, u"Zoom"_qs},
          {u"opera"_qs, u"Opera"_qs, u"Opera"_qs},
          {u"epiphany"_qs, u"a - Epiphany"_qs, u"a - Epiphany"_qs}})
        EXPECT_EQ(Browsers::pageTitle(browser, title), page) << qPrintable(title);
}

} // namespace
} // namespace velmo
