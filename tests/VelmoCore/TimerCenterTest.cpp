#include "VelmoCore/Timers/TimerCenter.h"

#include "VelmoCore/Foundation/DurationText.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>

namespace velmo {
namespace {

using testing::ElementsAre;

class TimerCenterTest : public testing::Test {
protected:
    TimerCenterTest() { launch(); }

    /// What was running goes on as after a kill: nothing is saved on the way.
    void launch()
    {
        center.emplace(folder.path(u"timers.json"_qs), DataFiles(), scheduler, activity,
                       [this] { return config; });
        center->onCompletion = [this](const TimerCenter::Completion &completion) {
            if (const auto *timer = std::get_if<TimerCenter::TimerCompletion>(&completion))
                completed.push_back(timer->timer.label);
            else
                completed.push_back(Pomodoro::title(
                    std::get<TimerCenter::PomodoroCompletion>(completion).finished));
        };
        center->evaluate();
    }
    const CountdownTimer &timer(std::size_t place) const { return center->timers().at(place); }

    TemporaryFolder folder;
    ManualScheduler scheduler;
    ActivityCenter activity{{}, {}, scheduler, 7};
    PomodoroConfig config;
    std::vector<QString> completed;
    std::optional<TimerCenter> center;
};

TEST_F(TimerCenterTest, EndsEachTimerOnceAtItsOwnTimeAlsoAfterARestart)
{
    const Date start = scheduler.now();
    center->startTimer(90s, u"chá"_qs);
    center->startTimer(30s);
    center->startTimer(1h);
    EXPECT_EQ(scheduler.pendingCount(), 1U);
    center->pause(timer(2).id);
    EXPECT_EQ(activity.live().size(), 3U);
    scheduler.advance(29s);
    EXPECT_TRUE(completed.empty());
    scheduler.advance(2s);
    EXPECT_THAT(completed, ElementsAre(u"0:30"_qs));
    center.reset();
    scheduler.advance(3h);
    launch();
    EXPECT_THAT(completed, ElementsAre(u"0:30"_qs, u"chá"_qs));
    EXPECT_EQ(timer(0).state, CountdownTimer::State(CountdownTimer::Finished{start + 90s}));
    EXPECT_EQ(timer(2).remaining(scheduler.now()), Seconds(1h));
    EXPECT_EQ(activity.live().size(), 1U);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    center->resume(timer(2).id);
    activity.cancel(activity.live().front().id);
    center->clearFinished();
    EXPECT_TRUE(center->timers().empty());
}

TEST_F(TimerCenterTest, BringsARemovedTimerBackAsItWouldBeByNow)
{
    const Date start = scheduler.now();
    for (const Seconds duration : {60s, 600s, 3600s})
        center->startTimer(duration);
    center->pause(timer(1).id);
    const auto running = center->remove(timer(0).id);
    const auto paused = center->remove(timer(0).id);
    scheduler.advance(90s);
    center->restore(paused);
    EXPECT_TRUE(timer(0).isPaused());
    EXPECT_EQ(timer(0).remaining(scheduler.now()), Seconds(600s));
    for (int again = 0; again < 2; ++again) {
        center->restore(running);
        EXPECT_THAT(completed, ElementsAre(u"1:00"_qs));
    }
    EXPECT_EQ(timer(0).state, CountdownTimer::State(CountdownTimer::Finished{start + 60s}));
    center->restore(center->clearFinished());
    EXPECT_EQ(timer(0).label, u"1:00");
    EXPECT_EQ(completed.size(), 1U);
    const auto last = center->remove(timer(2).id);
    EXPECT_EQ(scheduler.pendingCount(), 0U);
    center.reset();
    launch();
    center->restore(last);
    EXPECT_EQ(timer(2).remaining(scheduler.now()), Seconds(3510s));
    EXPECT_EQ(activity.live().size(), 2U);
}

TEST_F(TimerCenterTest, EndsATimerOnceHoweverTheClockIsSet)
{
    const Date start = scheduler.now();
    center->startTimer(10min, u"chá"_qs);
    scheduler.advance(1min);
    scheduler.setClock(start - 2h);
    scheduler.advance(1h);
    EXPECT_TRUE(completed.empty());
    scheduler.setClock(start + 3h);
    EXPECT_EQ(timer(0).state, CountdownTimer::State(CountdownTimer::Finished{start + 10min}));
    scheduler.setClock(start - 2h);
    scheduler.advance(5h);
    EXPECT_THAT(completed, ElementsAre(u"chá"_qs));
}

TEST_F(TimerCenterTest, GoesThroughTheCyclesOfAPomodoro)
{
    config.cyclesBeforeLongBreak = 2;
    center->startPomodoro();
    std::vector<PomodoroPhase> phases;
    for (int step = 0; step < 4; ++step) {
        phases.push_back(center->pomodoro()->phase);
        scheduler.advance(center->pomodoro()->timer.duration);
    }
    EXPECT_THAT(phases, ElementsAre(PomodoroPhase::focus, PomodoroPhase::shortBreak,
                                    PomodoroPhase::focus, PomodoroPhase::longBreak));
    EXPECT_THAT(completed,
                ElementsAre(u"Foco"_qs, u"Pausa curta"_qs, u"Foco"_qs, u"Pausa longa"_qs));
    EXPECT_EQ(center->history().size(), 2U);
    EXPECT_EQ(center->history().front().minutes, 25);
    EXPECT_EQ(center->focusSessionsToday(), 2);

    // Skipping records nothing; without autoAdvance the next phase waits.
    config.autoAdvance = false;
    config.cyclesBeforeLongBreak = 0;
    center->skipPomodoroPhase();
    EXPECT_EQ(center->pomodoro()->phase, PomodoroPhase::longBreak);
    EXPECT_TRUE(center->pomodoro()->timer.isPaused());
    EXPECT_EQ(center->history().size(), 2U);
    center->togglePomodoroPause();

    // Left for hours while closed, one phase ends; the next begins now.
    config.autoAdvance = true;
    center.reset();
    completed.clear();
    scheduler.advance(5h);
    launch();
    EXPECT_THAT(completed, ElementsAre(u"Pausa longa"_qs));
    EXPECT_EQ(center->pomodoro()->timer.remaining(scheduler.now()), Seconds(25min));
    activity.cancel(QString::fromLatin1(TimerCenter::pomodoroActivityID));
    EXPECT_FALSE(center->pomodoro());
    EXPECT_EQ(scheduler.pendingCount(), 0U);
}

TEST_F(TimerCenterTest, KeepsPresetsInOrderAndBoundsItsHistory)
{
    for (const Seconds seconds : {300s, 120s, 0s, -5s})
        center->addPreset(seconds);
    center->removePreset(60s);
    EXPECT_THAT(center->presets(), ElementsAre(120s, 300s, 600s, 1500s));
    config.focusMinutes = config.shortBreakMinutes = config.longBreakMinutes = 1;
    center.emplace(std::nullopt, DataFiles(), scheduler, activity, [this] { return config; });
    center->startPomodoro();
    scheduler.advance(Seconds(60 * 2 * 501));
    EXPECT_EQ(center->history().size(), TimerCenter::historyLimit);
    center->clearHistory();
    EXPECT_TRUE(center->history().empty());
}

TEST_F(TimerCenterTest, SetsADamagedFileAside)
{
    center.reset();
    folder.write(u"timers.json"_qs, "{\"timers\":[{");
    launch();
    ASSERT_TRUE(center->loadIssue());
    EXPECT_EQ(center->presets().size(), 4U);
    center->dismissIssues();
    EXPECT_FALSE(center->loadIssue());
}

/// The same rules, applied second by second.
struct PlainTimer {
    int left = 0;
    int duration = 0;
    enum { running, paused, finished } state = running;
};

TEST_F(TimerCenterTest, AgreesWithATimerThatTicks)
{
    std::mt19937 random(7);
    const auto upTo = [&](int limit) { return int(random() % unsigned(limit)); };
    std::vector<PlainTimer> plain;
    std::size_t ended = 0;
    for (int step = 0; step < 500; ++step) {
        const auto at = plain.empty() ? 0 : std::size_t(upTo(int(plain.size())));
        const int operation = plain.empty() ? 0 : upTo(7);
        if (operation == 0 && plain.size() < 6) {
            const int duration = 1 + upTo(40);
            plain.push_back({duration, duration, PlainTimer::running});
            center->startTimer(Seconds(duration));
        } else if (operation == 1) {
            if (plain[at].state == PlainTimer::running)
                plain[at].state = PlainTimer::paused;
            center->pause(timer(at).id);
        } else if (operation == 2) {
            if (plain[at].state == PlainTimer::paused)
                plain[at].state = PlainTimer::running;
            center->resume(timer(at).id);
        } else if (operation == 3) {
            plain[at] = {plain[at].duration, plain[at].duration, PlainTimer::running};
            center->restart(timer(at).id);
        } else if (operation == 4 && upTo(3) == 0) {
            plain.erase(plain.begin() + std::ptrdiff_t(at));
            center->remove(timer(at).id);
        } else if (operation == 5 && upTo(9) == 0) {
            center.reset();
            launch();
        } else {
            const int seconds = upTo(15);
            scheduler.advance(Seconds(seconds));
            for (PlainTimer &one : plain) {
                if (one.state != PlainTimer::running)
                    continue;
                one.left = std::max(one.left - seconds, 0);
                if (one.left == 0) {
                    one.state = PlainTimer::finished;
                    ++ended;
                }
            }
        }
        ASSERT_EQ(completed.size(), ended) << step;
        ASSERT_EQ(center->timers().size(), plain.size());
        for (std::size_t place = 0; place < plain.size(); ++place) {
            ASSERT_EQ(timer(place).remaining(scheduler.now()), Seconds(plain[place].left)) << step;
            ASSERT_EQ(timer(place).isPaused(), plain[place].state == PlainTimer::paused);
            ASSERT_EQ(timer(place).isFinished(), plain[place].state == PlainTimer::finished);
        }
    }
}

TEST(DurationText, ReadsWhatPeopleType)
{
    const std::pair<const char16_t *, int> cases[] = {
        {u"1:30", 90},       {u"90", 5400},       {u"1h20", 4800},    {u" 1 h ", 3600},
        {u"45 s", 45},       {u"10min", 600},     {u"1:20:00", 4800}, {u"90:00", 5400},
        {u"2H 5M 1S", 7501}, {u"3 minutos", 180}, {u"99h", 356'400},  {u"0:05", 5},
    };
    for (const auto &[text, seconds] : cases)
        EXPECT_EQ(durationFromText(text), Seconds(seconds))
            << QString::fromUtf16(text).toStdString();
    for (const char16_t *text : {u"", u"0", u"abc", u"1:3", u"1:60", u"-5", u"1,5", u":30", u"1h2h",
                                 u"99h1s", u"99999999999999", u"1::30"})
        EXPECT_EQ(durationFromText(text), std::nullopt) << QString::fromUtf16(text).toStdString();
}

} // namespace
} // namespace velmo
