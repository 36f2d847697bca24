#include "VelmoCore/Storage/BackgroundSaver.h"

#include "tests/support/ManualScheduler.h"

#include <gtest/gtest.h>

#include <latch>
#include <stdexcept>

namespace velmo {

TEST(BackgroundSaver, SavesTheLatestOfThoseThatWaitAndTellsOnTheMainThread)
{
    ManualScheduler scheduler;
    std::vector<int> saved;
    std::vector<bool> failures;
    BackgroundSaver saver(scheduler, [&](const std::exception_ptr &failure) {
        failures.push_back(failure != nullptr);
    });
    std::latch started(1);
    std::latch mayEnd(1);
    saver.save([&] {
        started.count_down();
        mayEnd.wait();
        saved.push_back(1);
    });
    started.wait();
    saver.save([&] { saved.push_back(2); });
    saver.save([&] {
        saved.push_back(3);
        throw std::runtime_error("full");
    });
    EXPECT_TRUE(failures.empty());
    mayEnd.count_down();
    saver.flush();
    EXPECT_EQ(saved, (std::vector{1, 3}));
    EXPECT_EQ(failures, std::vector{true});
    saver.save([&] { saved.push_back(4); });
    saver.flush();
    scheduler.runPosted();
    EXPECT_EQ(failures, (std::vector{true, false}));
}

TEST(BackgroundSaver, SavesBeforeItGoesAndTellsNobodyThen)
{
    ManualScheduler scheduler;
    bool isSaved = false;
    {
        BackgroundSaver saver(scheduler, [](const std::exception_ptr &) { FAIL(); });
        saver.save([&] { isSaved = true; });
    }
    EXPECT_TRUE(isSaved);
    scheduler.runPosted();
}

} // namespace velmo
