#include "tests/e2e/OrvaneTest.h"

namespace velmo {

class ScreenTest : public ManagedTest {};

ORVANE_UNDER_EACH_MANAGER(ScreenTest);

namespace {

/// What of the screen's upper half is black.
QRect blackPart(const XServer &screen)
{
    const QRect area(0, 0, 1512, 491);
    const auto pixels = screen.pixels(area);
    QRect black;
    auto pixel = pixels.begin();
    for (int y = 0; y < area.height(); ++y)
        for (int x = 0; x < area.width(); ++x)
            if (*pixel++ == 0)
                black |= QRect(x, y, 1, 1);
    return black;
}

/// The corners at the top edge run out into points, which blend with what is behind.
bool isAbout(const QRect &seen, const QRect &reported, int scale = 1)
{
    const int point = 6 * scale;
    return std::abs(seen.left() - reported.left()) <= point &&
           std::abs(seen.right() - reported.right()) <= point && seen.top() == reported.top() &&
           std::abs(seen.bottom() - reported.bottom()) <= 1;
}

} // namespace

TEST_P(ScreenTest, IsBlackWhereTheStatusPlacesTheShape)
{
    makeGreenWindow();
    const auto isBlackThere = [&](int scale) {
        QRect seen;
        QRect reported;
        if (eventually([&] {
                return isAbout(seen = blackPart(screen), reported = frame("shape"), scale);
            }))
            return testing::AssertionSuccess();
        return testing::AssertionFailure() << testing::PrintToString(seen) << " is black, not "
                                           << testing::PrintToString(reported);
    };
    for (const int scale : {1, 2}) {
        SCOPED_TRACE(scale);
        environment.insert("QT_SCALE_FACTOR", QString::number(scale));
        launch();
        EXPECT_EQ(frame("shape").width(), 202 * scale);
        EXPECT_TRUE(isBlackThere(scale));
        pressHotKey();
        ASSERT_TRUE(shows("expanded"));
        EXPECT_TRUE(isBlackThere(scale));
        orvane.terminate();
        ASSERT_EQ(exitCode(), 0);
    }
}

TEST_F(OrvaneTest, BlendsWithTheScreenWhileACompositorRuns)
{
    screen.runWindowManager();
    makeGreenWindow();
    launch();
    const QRect shape = frame("shape");
    const auto blends = [&] { // the round corner's edge, with what lies below
        const auto row = screen.pixels({shape.left(), shape.bottom() - 2, 20, 1});
        return std::ranges::any_of(row, [](auto each) { return each != 0 && each != green; });
    };
    const auto isBlackThere = [&] { return isAbout(blackPart(screen), shape); };
    for (int round = 0; round < 2; ++round) {
        EXPECT_TRUE(eventually(isBlackThere));
        QProcess &compositor =
            screen.run("picom", {"--backend", "xrender", "--config", "/dev/null"});
        EXPECT_TRUE(eventually([&] { return isBlackThere() && blends(); }));
        compositor.terminate();
        compositor.waitForFinished();
    }
}

TEST_P(ScreenTest, HasAPanelOfItsOwn)
{
    writeSettings({{"displayMode", QJsonObject{{"all", QJsonObject()}}}});
    const auto xrandr = [&](const QStringList &arguments) {
        EXPECT_TRUE(screen.run("xrandr", arguments).waitForFinished());
    };
    xrandr({"--setmonitor", "left", "756/200x982/260+0+0", "screen"});
    xrandr({"--setmonitor", "right", "756/200x982/260+756+0", "none"});
    launch();
    screen.movePointer(300, 600);
    pressHotKey();
    EXPECT_TRUE(shows("expanded", "left"));
    EXPECT_EQ(presentation("right"), "collapsed");
    screen.movePointer(1200, 600);
    pressHotKey();
    EXPECT_TRUE(shows("expanded", "right"));
    EXPECT_EQ(presentation("left"), "collapsed");

    xrandr({"--delmonitor", "right"});
    EXPECT_TRUE(eventually([&] { return display("right").isEmpty(); }));
    pressHotKey();
    EXPECT_TRUE(shows("expanded", "left"));
}

TEST_P(ScreenTest, GivesTheShapeItsCutOut)
{
    environment.insert("ORVANE_SCREEN_CUTOUT", "screen:32,656,656");
    launch();
    constexpr int corner = 6;
    EXPECT_EQ(frame("shape"), QRect(656 - corner, 0, 200 + 2 * corner, 32));
    screen.movePointer(notch.x(), notch.y());
    EXPECT_TRUE(shows("expanded"));
}

} // namespace velmo
