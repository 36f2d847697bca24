#include "tests/e2e/OrvaneTest.h"

#include <QFile>

#include <X11/keysym.h>

namespace velmo {

namespace {

/// Of the only file in the file manager's window, which fills the screen.
constexpr QPoint icon{50, 108};
constexpr QPoint emptyPlace{700, 600};
constexpr QPoint notchZone{1100, 90};
constexpr QPoint besideIt{1000, 150};
/// Of the first item on the Shelf's page.
constexpr QPoint shelfTile{245, 120};
constexpr std::uint32_t white = 0xffffff;
constexpr std::uint32_t targeted = 0x3a3a3a;

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
        ASSERT_TRUE(eventually([&] { return pixel(emptyPlace) == white; }));
    }

    bool stands(const char *path) const { return QFile::exists(home.path("home/") + path); }

    void drag(const QPoint &point)
    {
        screen.movePointer(point.x() + 1, point.y());
        screen.movePointer(point.x(), point.y());
        pause(20ms); // no hand is faster
    }

    /// Moves the only file into the notch and shows it on the Shelf's page.
    void moveIn()
    {
        ASSERT_TRUE(dragToNotch(icon));
        EXPECT_TRUE(eventually([&] {
            drag(notchZone);
            return pixel(besideIt) == targeted;
        }));
        screen.setButton(1, false);
        EXPECT_TRUE(eventually([&] { return stands("No Notch/Relatório.txt"); }));
        EXPECT_FALSE(stands("Docs/Relatório.txt"));
        EXPECT_TRUE(shows("dropResult"));
    }

    bool openShelf()
    {
        run({"open", "shelf"});
        const bool isOpen = bool(shows("expanded"));
        pause(300ms); // its tiles come with it
        return isOpen;
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

TEST_F(FileManagerTest, GivesAFileAndGetsItBackWhenItLeavesTheShelf)
{
    moveIn();
    EXPECT_TRUE(eventually([&] { return stands(".local/share/Orvane/Shelf/shelf.json"); }));
    EXPECT_TRUE(eventually(
        [&] {
            if (!openShelf())
                return false;
            screen.click(shelfTile.x(), shelfTile.y());
            screen.typeKey(XK_Delete);
            screen.typeKey(XK_Escape); // from now on it can't be undone
            return eventually([&] { return stands("Docs/Relatório.txt"); }, 1s);
        },
        20s));
    EXPECT_FALSE(stands("No Notch/Relatório.txt"));
}

TEST_F(FileManagerTest, TakesAFileThatIsDraggedOutOfTheShelf)
{
    moveIn();
    EXPECT_TRUE(eventually(
        [&] {
            if (!openShelf())
                return false;
            screen.movePointer(shelfTile.x(), shelfTile.y());
            pause(100ms);
            screen.setButton(1, true);
            pause(100ms);
            for (int way = 4; way <= 40; way += 4)
                drag(shelfTile + QPoint(0, way));
            pause(300ms); // its picture is taken
            for (int way = 40; way <= 480; way += 40)
                drag(shelfTile + QPoint(way, way));
            for (int way = 0; way < 20; ++way)
                drag(emptyPlace + QPoint(way, 0)); // until the file manager takes it
            pause(200ms);
            screen.setButton(1, false);
            return eventually([&] { return stands("Docs/Relatório.txt"); }, 2s);
        },
        40s));
}

} // namespace velmo
