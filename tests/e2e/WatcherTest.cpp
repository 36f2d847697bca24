#include "tests/e2e/OrvaneTest.h"

#include <thread>

namespace velmo {

TEST_F(OrvaneTest, IsFoundOutWhenItsMainLoopStands)
{
    launch();
    EXPECT_EQ(takeLate().size(), 0U);
    xcb_grab_server(screen.client()); // Orvane waits for it as soon as it asks something
    xcb_flush(screen.client());
    const std::jthread hand([this] {
        std::this_thread::sleep_for(1s);
        xcb_ungrab_server(screen.client());
        xcb_flush(screen.client());
    });
    EXPECT_EQ(run({"open"}).exitCode, 0);
    EXPECT_TRUE(logs("blocked for "));
    EXPECT_GE(takeLate().size(), 1U);
}

} // namespace velmo
