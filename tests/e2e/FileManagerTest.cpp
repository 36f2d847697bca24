#include "tests/e2e/OrvaneTest.h"

#include <QFile>

namespace velmo {

namespace {

/// Of the only file in the file manager's window, which fills the screen.
constexpr QPoint icon{50, 108};
constexpr QPoint emptyPlace{700, 600};
constexpr QPoint notchZone{1100, 90};
constexpr QPoint besideIt{1000, 150};
constexpr std::uint32_t white = 0xffffff;
constexpr std::uint32_t targeted = 0x292929;

} // namespace

/// Orvane beside a real file manager, with the user's own folders.
class FileManagerTest : public OrvaneTest {
protected:
    void SetUp() override
    {
        environment.insert("XDG_DATA_HOME", home.path("home/.local/share"));
        home.write("home/.local/share/Orvane/settings.json", R"({"hasCompletedOnboarding":true})");
        home.write("config/pcmanfm/default/pcmanfm.conf",
                   "[ui]\nmaximized=1\nside_pane_mode=hidden;places\nview_mode=icon\ntoolbar=\n");
        home.write("home/Docs/Relatório.txt", "relatório");
        screen.runWindowManager();
        launch();
        screen.run("pcmanfm", {home.path("home/Docs")});
        ASSERT_TRUE(eventually([&] { return pixel(emptyPlace) == white; }, 20s));
    }

    bool stands(const char *path) const { return QFile::exists(home.path("home/") + path); }

    void drag(const QPoint &point)
    {
        screen.movePointer(point.x() + 1, point.y());
        screen.movePointer(point.x(), point.y());
        pause(20ms); // no hand is faster
    }

    /// Takes what lies there, which may have to be drawn first, to the panel.
    bool dragToNotch(const QPoint &from)
    {
        return eventually(
            [&] {
                screen.setButton(1, false);
                screen.movePointer(from.x(), from.y());
                screen.setButton(1, true);
                for (const QPoint &point : {from + QPoint(20, 20), from + QPoint(60, 40), notch})
                    drag(point);
                return eventually([&] { return presentation() == u"dropTarget"; }, 500ms);
            },
            20s);
    }
};

TEST_F(FileManagerTest, LetsGoOfAFileThatFallsIntoTheNotch)
{
    ASSERT_TRUE(dragToNotch(icon));
    EXPECT_TRUE(eventually([&] {
        drag(notchZone);
        return pixel(besideIt) == targeted;
    }));
    screen.setButton(1, false);
    EXPECT_TRUE(eventually([&] { return stands("No Notch/Relatório.txt"); }));
    EXPECT_FALSE(stands("Docs/Relatório.txt"));
    EXPECT_TRUE(eventually([&] { return stands(".local/share/Orvane/Shelf/shelf.json"); }));
    EXPECT_TRUE(shows("dropResult"));
}

} // namespace velmo
