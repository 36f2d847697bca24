#include "VelmoUI/Modules/Frame/LiveRows.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmo {
namespace {

using testing::ElementsAre;

class LiveRowsTest : public testing::Test {
protected:
    LiveRowsTest()
    {
        QObject::connect(&rows, &LiveRows::changed, [this] { ++changes; });
    }

    void upsert(LiveActivity activity)
    {
        activity.id = activity.title = u"a"_qs;
        center.upsert(activity);
    }
    void countDown(Seconds length)
    {
        upsert({.countdown = DateRange{scheduler.now(), scheduler.now() + length}});
    }
    QString value() const { return rows.model().records().at(0).value; }

    ManualScheduler scheduler;
    ActivityCenter center{{}, {}, scheduler, 7};
    LiveRows rows{center, scheduler};
    int changes = 0;
};

TEST_F(LiveRowsTest, CountsDownSecondBySecondAndThenRests)
{
    rows.setWatched(true);
    scheduler.advance(0.3s);
    countDown(3s);
    changes = 0;
    std::vector<QString> shown = {value()};
    for (int tenth = 0; tenth < 40; ++tenth) {
        scheduler.advance(0.1s);
        if (value() != shown.back())
            shown.push_back(value());
    }
    EXPECT_THAT(shown, ElementsAre(u"0:03", u"0:02", u"0:01", u"0:00"));
    EXPECT_EQ(rows.model().records().at(0).progress, 1);
    EXPECT_LE(changes, 4);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

TEST_F(LiveRowsTest, CountsUpAcrossMinutesAndHours)
{
    rows.setWatched(true);
    upsert({.startedAt = scheduler.now() - 59.4s});
    EXPECT_EQ(value(), u"0:59");
    scheduler.advance(0.59s);
    EXPECT_EQ(value(), u"0:59");
    scheduler.advance(0.02s);
    EXPECT_EQ(value(), u"1:00");
    upsert({.startedAt = scheduler.now() - 3599.5s});
    EXPECT_EQ(value(), u"59:59");
    scheduler.advance(0.51s);
    EXPECT_EQ(value(), u"1:00:00");
    EXPECT_EQ(rows.model().records().at(0).shortTime, u"1h00");
    upsert({.startedAt = scheduler.now() + 5s});
    EXPECT_EQ(value(), u"0:00") << "a clock that was set back";
}

TEST_F(LiveRowsTest, LeavesTheClockAloneUnlessSomebodyWatchesACountingRow)
{
    countDown(10s);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    scheduler.advance(4.5s);
    rows.setWatched(true);
    EXPECT_EQ(value(), u"0:06") << "up to date as soon as it is seen";
    EXPECT_EQ(scheduler.pendingCount(), 1U);
    rows.setWatched(false);
    EXPECT_EQ(scheduler.pendingCount(), 0U);

    rows.setWatched(true);
    upsert({.progress = 0.429});
    EXPECT_EQ(value(), u"42%");
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    upsert({});
    EXPECT_EQ(value(), QString());
    EXPECT_LT(rows.model().records().at(0).progress, 0);
}

} // namespace
} // namespace velmo
