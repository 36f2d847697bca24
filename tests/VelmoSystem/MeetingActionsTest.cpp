#include "VelmoSystem/Meetings/MeetingActions.h"

#include "VelmoCore/Activity/ActivityCenter.h"

#include "tests/support/FakeMeetings.h"
#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velmo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Window = BrowserWindows::Window;

const Window page{.browser = u"firefox"_qs, .title = u"Notícias"_qs, .isFront = true};
const Window ana{.browser = u"firefox"_qs, .title = u"Meet - abc-defg-hij"_qs, .isFront = true};
const Window bia{.browser = u"firefox"_qs, .title = u"Zoom Meeting"_qs, .isFront = true};

Window behind(Window window)
{
    window.isFront = false;
    return window;
}

class MeetingActionsTest : public testing::Test {
protected:
    MeetingActionsTest() { actions.start(); }

    /// Seconds that the activity has counted; negative without it.
    double counted() const
    {
        return activity.live().empty()
                   ? -1
                   : Seconds(scheduler.now() - *activity.live()[0].startedAt).count();
    }
    std::vector<QString> history() const
    {
        std::vector<QString> titles;
        for (const ActivityEvent &event : activity.history())
            titles.push_back(event.title);
        return titles;
    }
    void startCall()
    {
        windows.show({ana});
        devices.listen({u"firefox"_qs});
        ASSERT_EQ(counted(), 0);
    }
    bool isIdle() const { return !devices.isMicrophoneWatched && scheduler.pendingCount() == 0; }

    ManualScheduler scheduler;
    ActivityCenter activity{{}, {}, scheduler, 7, 0.1s};
    FakeBrowserWindows windows;
    FakeCaptureDevices devices;
    MeetingActions actions{windows, devices, activity, scheduler};
};

TEST_F(MeetingActionsTest, ShowsACallFromItsFirstWordUntilTheGraceIsOver)
{
    windows.show({page});
    EXPECT_TRUE(isIdle());
    EXPECT_EQ(devices.cameraLooks, 0);
    windows.show({behind(page), ana});
    EXPECT_TRUE(devices.isMicrophoneWatched);
    devices.listen({u"chromium"_qs, u"obs"_qs});
    EXPECT_EQ(counted(), -1) << "others listen";
    devices.listen({u"firefox"_qs, u"obs"_qs});
    EXPECT_THAT(activity.live(),
                ElementsAre(LiveActivity{.id = u"meeting.timer"_qs,
                                         .source = u"meeting"_qs,
                                         .symbol = u"video.fill"_qs,
                                         .title = u"Em reunião"_qs,
                                         .detail = u"Google Meet · abc-defg-hij"_qs,
                                         .progress = {},
                                         .countdown = {},
                                         .startedAt = scheduler.now(),
                                         .priority = 8,
                                         .isCancellable = true}));
    EXPECT_EQ(scheduler.pendingCount(), 0U) << "nothing polls while somebody talks";

    scheduler.advance(30min);
    windows.show({behind(ana), page});
    scheduler.advance(30min);
    devices.listen({});
    scheduler.advance(15s);
    devices.listen({u"firefox"_qs});
    scheduler.advance(40min);
    EXPECT_EQ(counted(), 6015);
    windows.show({page});
    EXPECT_FALSE(devices.isMicrophoneWatched);
    scheduler.advance(20s);
    EXPECT_EQ(counted(), 6035);
    scheduler.advance(1s);
    EXPECT_EQ(counted(), -1);
    ASSERT_THAT(history(), ElementsAre(u"Reunião: 1:40:36"_qs));
    EXPECT_EQ(activity.history()[0].symbol, u"video.fill");
    EXPECT_EQ(activity.history()[0].source, u"meeting");
    scheduler.advance(1s);
    EXPECT_TRUE(isIdle());
}

TEST_F(MeetingActionsTest, TakesACallUpAgainForTenMinutes)
{
    startCall();
    devices.listen({});
    scheduler.advance(21s);
    EXPECT_EQ(counted(), -1);
    scheduler.advance(5min);

    windows.show({ana});
    devices.listen({u"firefox"_qs});
    EXPECT_EQ(counted(), 321);
    devices.listen({});
    scheduler.advance(11min);
    devices.listen({u"firefox"_qs});
    EXPECT_EQ(counted(), 0);
    EXPECT_THAT(history(), ElementsAre(u"Reunião: 5:42"_qs, u"Reunião: 0:21"_qs));
}

TEST_F(MeetingActionsTest, LooksAtTheCameraEveryFiveSecondsWhileNobodyTalks)
{
    windows.show({ana});
    for (int second = 0; second < 60; ++second) {
        if (devices.cameraAnswer)
            devices.answerCamera(second >= 20 && second < 40);
        windows.show({ana, page});
        windows.show({ana});
        EXPECT_EQ(counted() >= 0, second >= 20) << second;
        scheduler.advance(1s);
    }
    EXPECT_EQ(devices.cameraLooks, 12 + 1);
    scheduler.advance(1s);
    EXPECT_THAT(history(), ElementsAre(u"Reunião: 0:41"_qs));
    scheduler.advance(1s);
    windows.show({page});
    devices.answerCamera(true);
    EXPECT_EQ(counted(), -1) << "a late answer";
    EXPECT_TRUE(isIdle());
}

TEST_F(MeetingActionsTest, ShowsNoMoreOfADismissedCallUntilAnotherStarts)
{
    startCall();
    activity.cancel(u"meeting.timer"_qs);
    EXPECT_TRUE(isIdle()) << "nothing is looked at for it";
    scheduler.advance(1h);
    windows.show({ana, behind(bia)});
    EXPECT_EQ(counted(), -1);
    EXPECT_TRUE(isIdle());
    windows.show({behind(ana), bia});
    EXPECT_EQ(counted(), 0);
    EXPECT_EQ(activity.live()[0].detail, u"Zoom · Zoom Meeting"_qs);
    scheduler.advance(1min);
    windows.show({ana, behind(bia)});
    EXPECT_EQ(counted(), 0) << "another meeting has started since";
    EXPECT_THAT(history(), IsEmpty());
}

TEST_F(MeetingActionsTest, StartsNothingInAWindowBehind)
{
    devices.listen({u"firefox"_qs});
    windows.show({page, behind(ana)});
    EXPECT_TRUE(isIdle());
    startCall();
    windows.show({page, behind(ana), behind(bia)});
    scheduler.advance(1h);
    EXPECT_EQ(counted(), 3600);
    devices.listen({});
    for (Seconds left = 10min; left >= 0s; left -= 5s) {
        EXPECT_FALSE(isIdle());
        devices.answerCamera(false);
        scheduler.advance(5s);
    }
    EXPECT_TRUE(isIdle()) << "a page that was left open";
}

TEST_F(MeetingActionsTest, EndsACallAlsoWhereTheClockWasSetBack)
{
    startCall();
    devices.listen({});
    scheduler.setClock(scheduler.now() - 1h);
    scheduler.advance(42s);
    EXPECT_THAT(history(), ElementsAre(u"Reunião: 0:00"_qs));
}

} // namespace
} // namespace velmo
