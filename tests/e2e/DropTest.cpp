#include "tests/e2e/OrvaneTest.h"

#include <QFile>

#include <X11/keysym.h>

namespace velmo {

namespace {

constexpr QPoint source{610, 600}; ///< in the window of the drag source, beside its picture
constexpr QPoint surface{700, 60}; ///< in the zone for actions, beside one or two others
constexpr QPoint notchZone{1100, 90};
constexpr QPoint outside{700, 700};
constexpr QPoint outsideItsButtons{500, 38}; ///< in the panel that shows what was dropped
constexpr std::uint32_t blue = 0x0000ff;
constexpr std::uint32_t yellow = 0xffff00;
constexpr std::uint32_t red = 0xff0000;

} // namespace

class DropTest : public ManagedTest {
protected:
    /// Begins to drag what the source has. `file` may be empty.
    void beginDrag(const QString &file)
    {
        screen.run(DRAG_SOURCE, {file});
        ASSERT_TRUE(eventually([&] { return pixel(source) == blue; }));
        screen.movePointer(source.x(), source.y());
        screen.setButton(1, true);
        pause(50ms); // no hand is faster
    }

    /// No hand holds a dragged thing still.
    void drag(const QPoint &point)
    {
        screen.movePointer(point.x() + 1, point.y());
        screen.movePointer(point.x(), point.y());
    }

    bool dragUntilItShows(const QPoint &point, const QString &wanted)
    {
        return eventually([&] {
            drag(point);
            return presentation() == wanted;
        });
    }

    bool dragUntilTheSourceIs(std::uint32_t color, const QPoint &point)
    {
        return eventually([&] {
            drag(point);
            return pixel(source) == color;
        });
    }

    void dropOnTheSurface()
    {
        EXPECT_TRUE(dragUntilTheSourceIs(yellow, surface));
        screen.setButton(1, false);
    }
};

ORVANE_UNDER_EACH_MANAGER(DropTest);

TEST_P(DropTest, TakesAFileThatIsDraggedOntoTheNotch)
{
    home.write("Relatório.txt", "x");
    launch();
    beginDrag(home.path("Relatório.txt"));
    ASSERT_TRUE(dragUntilItShows(notch, "dropTarget"));
    drag(outside);
    pause(80ms);
    drag(surface);
    EXPECT_TRUE(keeps("dropTarget", 400ms));
    EXPECT_TRUE(dragUntilItShows(outside, "collapsed"));
    ASSERT_TRUE(dragUntilItShows(notch, "dropTarget"));
    dropOnTheSurface();
    EXPECT_TRUE(shows("dropResult"));
}

TEST_P(DropTest, ShowsAMoveWhereItMovesAFileAndTakesItBack)
{
    home.write("Pasta/Relatório.txt", "x");
    const QString original = home.path("Pasta/Relatório.txt");
    const QString moved = home.path("data/Orvane/Shelf/Copies/Mesa/Relatório.txt");
    launch();
    beginDrag(original);
    ASSERT_TRUE(dragUntilItShows(notch, "dropTarget"));
    EXPECT_TRUE(dragUntilTheSourceIs(red, notchZone));
    EXPECT_TRUE(dragUntilTheSourceIs(yellow, surface));
    EXPECT_TRUE(dragUntilTheSourceIs(red, notchZone));
    screen.setButton(1, false);
    EXPECT_TRUE(eventually([&] { return QFile::exists(moved); }));
    EXPECT_FALSE(QFile::exists(original));
    EXPECT_TRUE(shows("dropResult"));
    EXPECT_TRUE(eventually([&] { return status()["feedback"] == "Movido de Pasta"; }));
    screen.click(outsideItsButtons.x(),
                 outsideItsButtons.y()); // which gives the panel the keyboard
    EXPECT_TRUE(eventually([&] {
        screen.typeKey(XK_z, {XK_Control_L});
        return QFile::exists(original);
    }));
    EXPECT_FALSE(QFile::exists(moved));
}

TEST_P(DropTest, ClosesAfterADropWithNothingInIt)
{
    launch();
    beginDrag({});
    ASSERT_TRUE(dragUntilItShows(notch, "dropTarget"));
    dropOnTheSurface();
    EXPECT_TRUE(shows("collapsed"));
}

TEST_P(DropTest, NeverWaitsForASourceThatIsSilent)
{
    launch();
    beginDrag("silent");
    ASSERT_TRUE(dragUntilItShows(notch, "dropTarget"));
    dropOnTheSurface();
    EXPECT_TRUE(keeps("dropTarget", 1s)) << "it may come yet";
    EXPECT_TRUE(shows("collapsed"));
}

} // namespace velmo
