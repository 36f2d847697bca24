#include "VelmoCore/Foundation/SystemScheduler.h"

#include "tests/support/ManualScheduler.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>

#include <gmock/gmock.h>

#include <thread>

namespace velmo {

using testing::ElementsAre;
using testing::IsEmpty;

namespace {

/// Lets a scheduler work until `isDone`; false if that takes absurdly long.
bool runUntil(const std::function<bool()> &isDone)
{
    const QDeadlineTimer limit(10s);
    while (!isDone() && !limit.hasExpired())
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 100);
    return isDone();
}

/// The rules of waiting tasks, the same for every scheduler.
template <class Tested>
class SchedulerContract : public testing::Test {
protected:
    ScheduledTask noteAfter(Seconds delay, int step)
    {
        return m_scheduler.after(delay, [this, step] { m_steps.push_back(step); });
    }

    const std::vector<int> &stepsUntil(std::size_t count)
    {
        if constexpr (std::is_same_v<Tested, ManualScheduler>)
            m_scheduler.advance(1s);
        else
            runUntil([&] { return m_steps.size() >= count; });
        return m_steps;
    }

    Tested m_scheduler;
    std::vector<int> m_steps;
};

} // namespace

using Schedulers = testing::Types<ManualScheduler, SystemScheduler>;
TYPED_TEST_SUITE(SchedulerContract, Schedulers, );

TYPED_TEST(SchedulerContract, RunsTasksByDeadlineAndThenByOrder)
{
    const auto late = this->noteAfter(0.02s, 4);
    const auto second = this->noteAfter(0.01s, 3);
    const auto atOnce = this->noteAfter(-1s, 1);
    const auto next = this->noteAfter(0s, 2);
    EXPECT_TRUE(late.isPending());
    EXPECT_THAT(this->stepsUntil(4), ElementsAre(1, 2, 3, 4));
    EXPECT_FALSE(late.isPending());
}

TYPED_TEST(SchedulerContract, RunsTasksByDate)
{
    const Date now = this->m_scheduler.now();
    const auto note = [this](int step) { return [this, step] { this->m_steps.push_back(step); }; };
    const auto later = this->m_scheduler.at(now + 0.02s, note(3));
    const auto soon = this->m_scheduler.at(now + 0.01s, note(2));
    const auto over = this->m_scheduler.at(now - 1h, note(1));
    auto cancelled = this->m_scheduler.at(now, note(-1));
    cancelled.cancel();
    EXPECT_THAT(this->stepsUntil(3), ElementsAre(1, 2, 3));
    EXPECT_FALSE(later.isPending());
}

TYPED_TEST(SchedulerContract, ForgetsCancelledDroppedAndReplacedTasks)
{
    auto cancelled = this->noteAfter(0s, -1);
    cancelled.cancel();
    cancelled.cancel();
    EXPECT_FALSE(cancelled.isPending());
    (void)this->noteAfter(0s, -2);
    auto replaced = this->noteAfter(0s, -3);
    replaced = this->noteAfter(0.01s, 1);
    const auto moved = std::move(replaced);
    EXPECT_THAT(this->stepsUntil(1), ElementsAre(1));
}

TYPED_TEST(SchedulerContract, LetsABodyDoWhatItLikesWithTasks)
{
    auto own = std::make_unique<ScheduledTask>();
    ScheduledTask other = this->noteAfter(0.5s, -1); // not due before `own`, however slow
    ScheduledTask again;
    const auto witness = std::make_shared<int>(7);
    *own = this->m_scheduler.after(0s, [&, this, witness] {
        own.reset();
        other.cancel();
        this->m_steps.push_back(*witness);
        again = this->m_scheduler.after(0.01s, [&, this] {
            again = this->noteAfter(0s, 9);
            this->m_steps.push_back(8);
        });
    });
    EXPECT_THAT(this->stepsUntil(3), ElementsAre(7, 8, 9));
    EXPECT_EQ(witness.use_count(), 1);
}

TYPED_TEST(SchedulerContract, DropsTheTasksThatACancelledBodyHolds)
{
    auto inner = std::make_shared<ScheduledTask>(this->noteAfter(0s, -1));
    auto outer = this->m_scheduler.after(0s, [inner] {});
    inner.reset();
    outer = this->noteAfter(0s, 1);
    EXPECT_THAT(this->stepsUntil(1), ElementsAre(1));
}

TYPED_TEST(SchedulerContract, RunsPostedBodiesOnTheMainThread)
{
    std::thread::id seen;
    std::jthread([&, this] {
        this->m_scheduler.post([&, this] {
            seen = std::this_thread::get_id();
            this->m_steps.push_back(1);
        });
    }).join();
    EXPECT_THAT(this->m_steps, IsEmpty());
    EXPECT_THAT(this->stepsUntil(1), ElementsAre(1));
    EXPECT_EQ(seen, std::this_thread::get_id());
}

TEST(SystemScheduler, NeverRunsATaskBeforeItsTime)
{
    SystemScheduler scheduler;
    const Date start = scheduler.now();
    std::vector<Seconds> lateness;
    std::vector<ScheduledTask> tasks;
    for (int i = 0; i < 50; ++i) {
        const Seconds delay{i * 0.000'37};
        tasks.push_back(scheduler.after(
            delay, [&, delay] { lateness.push_back(scheduler.now() - start - delay); }));
    }
    ASSERT_TRUE(runUntil([&] { return lateness.size() == tasks.size(); }));
    // The wall clock may be slewed against the one that counts.
    EXPECT_THAT(lateness, testing::Each(testing::Ge(Seconds{-0.000'1})));
}

TEST(SystemScheduler, SleepsWhenNothingWaits)
{
    QEventLoop loop;
    while (loop.processEvents()) {
    }
    SystemScheduler scheduler;
    auto task = scheduler.after(0s, [] {});
    task.cancel();
    EXPECT_FALSE(loop.processEvents());
    task = scheduler.after(Seconds::max(), [] {});
    EXPECT_FALSE(loop.processEvents());
}

TEST(SystemScheduler, KeepsTimeInsideALoopThatABodyRuns)
{
    SystemScheduler scheduler;
    ScheduledTask inner;
    bool ranInside = false;
    const auto outer = scheduler.after(0s, [&] {
        inner = scheduler.after(0.01s, [] {});
        ranInside = runUntil([&] { return !inner.isPending(); });
    });
    ASSERT_TRUE(runUntil([&] { return !outer.isPending(); }));
    EXPECT_TRUE(ranInside);
}

} // namespace velmo
