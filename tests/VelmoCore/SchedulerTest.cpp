#include "VelmoCore/Foundation/SystemScheduler.h"

#include "tests/support/ManualScheduler.h"

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>

#include <gmock/gmock.h>

#include <thread>

namespace velmo {

using testing::ElementsAre;

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
    bool runUntil(const std::function<bool()> &isDone)
    {
        if constexpr (std::is_same_v<Tested, ManualScheduler>) {
            m_scheduler.advance(1s);
            return isDone();
        } else {
            return velmo::runUntil(isDone);
        }
    }

    void note(int step) { m_steps.push_back(step); }

    Tested m_scheduler;
    std::vector<int> m_steps;
};

using Schedulers = testing::Types<ManualScheduler, SystemScheduler>;

} // namespace

TYPED_TEST_SUITE(SchedulerContract, Schedulers, );

TYPED_TEST(SchedulerContract, RunsTasksByDeadlineAndThenByOrder)
{
    const auto late = this->m_scheduler.after(0.02s, [this] { this->note(4); });
    const auto second = this->m_scheduler.after(0.01s, [this] { this->note(3); });
    const auto atOnce = this->m_scheduler.after(-1s, [this] { this->note(1); });
    const auto next = this->m_scheduler.after(0s, [this] { this->note(2); });
    EXPECT_TRUE(late.isPending());

    ASSERT_TRUE(this->runUntil([this] { return this->m_steps.size() == 4; }));
    EXPECT_THAT(this->m_steps, ElementsAre(1, 2, 3, 4));
    EXPECT_FALSE(late.isPending());
}

TYPED_TEST(SchedulerContract, ForgetsCancelledDroppedAndReplacedTasks)
{
    auto cancelled = this->m_scheduler.after(0s, [this] { this->note(-1); });
    cancelled.cancel();
    cancelled.cancel();
    EXPECT_FALSE(cancelled.isPending());
    (void)this->m_scheduler.after(0s, [this] { this->note(-2); });
    auto replaced = this->m_scheduler.after(0s, [this] { this->note(-3); });
    replaced = this->m_scheduler.after(0.01s, [this] { this->note(1); });
    auto moved = std::move(replaced);
    auto &same = moved;
    moved = std::move(same);

    ASSERT_TRUE(this->runUntil([this] { return !this->m_steps.empty(); }));
    EXPECT_THAT(this->m_steps, ElementsAre(1));
}

TYPED_TEST(SchedulerContract, LetsABodyDoWhatItLikesWithTasks)
{
    auto own = std::make_unique<ScheduledTask>();
    ScheduledTask other = this->m_scheduler.after(0.01s, [this] { this->note(-1); });
    ScheduledTask again;
    const auto witness = std::make_shared<int>(7);
    *own = this->m_scheduler.after(0s, [&, this, witness] {
        own.reset();
        other.cancel();
        this->note(*witness);
        again = this->m_scheduler.after(0.01s, [&, this] {
            again = this->m_scheduler.after(0s, [this] { this->note(9); });
            this->note(8);
        });
    });

    ASSERT_TRUE(this->runUntil([this] { return this->m_steps.size() == 3; }));
    EXPECT_THAT(this->m_steps, ElementsAre(7, 8, 9));
    EXPECT_EQ(witness.use_count(), 1);
}

TYPED_TEST(SchedulerContract, DropsTheTasksThatACancelledBodyHolds)
{
    auto inner =
        std::make_shared<ScheduledTask>(this->m_scheduler.after(0s, [this] { this->note(-1); }));
    auto outer = this->m_scheduler.after(0s, [inner] {});
    inner.reset();
    outer = this->m_scheduler.after(0s, [this] { this->note(1); });

    ASSERT_TRUE(this->runUntil([this] { return !this->m_steps.empty(); }));
    EXPECT_THAT(this->m_steps, ElementsAre(1));
}

TYPED_TEST(SchedulerContract, RunsPostedBodiesOnTheMainThread)
{
    const auto mainThread = std::this_thread::get_id();
    std::thread::id seen;
    std::jthread([&] {
        this->m_scheduler.post([&] { seen = std::this_thread::get_id(); });
    }).join();
    EXPECT_EQ(seen, std::thread::id());
    ASSERT_TRUE(this->runUntil([&] { return seen != std::thread::id(); }));
    EXPECT_EQ(seen, mainThread);
}

TEST(SystemScheduler, NeverRunsATaskBeforeItsTime)
{
    SystemScheduler scheduler;
    const auto start = std::chrono::steady_clock::now();
    std::vector<Seconds> lateness;
    std::vector<ScheduledTask> tasks;
    for (int i = 0; i < 50; ++i) {
        const Seconds delay{i * 0.000'37};
        tasks.push_back(scheduler.after(delay, [&, delay] {
            lateness.push_back(std::chrono::steady_clock::now() - start - delay);
        }));
    }
    ASSERT_TRUE(runUntil([&] { return lateness.size() == tasks.size(); }));
    EXPECT_THAT(lateness, testing::Each(testing::Ge(Seconds{0})));
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

TEST(ManualScheduler, GivesEachBodyItsOwnMoment)
{
    ManualScheduler scheduler(Date{100s});
    std::vector<double> moments;
    ScheduledTask task;
    std::function<void()> tick = [&] {
        moments.push_back(scheduler.now().time_since_epoch().count());
        task = scheduler.after(0.1s, tick);
    };
    task = scheduler.after(0.1s, tick);
    scheduler.advance(0.25s);
    scheduler.advance(0.05s);
    EXPECT_THAT(moments, ElementsAre(100.1, 100.2, 100.3));
    EXPECT_EQ(scheduler.now(), Date{100.3s});
    EXPECT_EQ(scheduler.pendingCount(), 1U);
}

} // namespace velmo
