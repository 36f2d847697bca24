#include "VelmoCore/Jobs/JobCenter.h"

#include "VelmoCore/Foundation/Cancelled.h"
#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"

#include <QCoreApplication>

#include <gtest/gtest.h>

#include <cerrno>
#include <thread>

namespace velmo {
namespace {

using Updates = std::vector<std::optional<double>>;

/// Jobs run on real threads and come back by a real event loop.
class JobCenterTest : public testing::Test {
protected:
    QString run(JobCenter::Work work)
    {
        return jobs.run(u"Compactar"_qs, u"doc.zipper"_qs, u"files"_qs, std::move(work));
    }
    void wait(const std::function<bool()> &isDone)
    {
        while (!isDone())
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    ActivityEvent end(JobCenter::Work work)
    {
        run(std::move(work));
        wait([&] { return jobs.runningCount() == 0; });
        EXPECT_TRUE(activity.live().empty());
        return activity.history().front();
    }

    SystemScheduler scheduler;
    ActivityCenter activity{{}, {}, scheduler, 7};
    JobCenter jobs{activity, scheduler};
};

} // namespace

TEST(JobProgress, DropsWhatComesTooSoonUnlessForced)
{
    ManualScheduler scheduler;
    Updates sent;
    JobProgress progress(scheduler, [&](auto share, const auto &) { sent.push_back(share); });
    progress.update(1.7);
    progress.update(0.5);
    progress.update(-0.2, std::nullopt, true);
    scheduler.advance(0.1s);
    progress.update(0.5);
    scheduler.advance(0.11s);
    progress.update(std::nullopt);
    scheduler.setClock(scheduler.now() - 1h);
    scheduler.advance(0.11s);
    progress.update(0.7);
    EXPECT_EQ(sent, (Updates{1, 0, std::nullopt, 0.7}));
}

TEST_F(JobCenterTest, EndsInTheHistoryWithItsOwnWords)
{
    const std::vector<QUrl> made{QUrl(u"file:///a.zip"_qs)};
    std::vector<QUrl> adopted;
    jobs.onOutputs = [&](const auto &urls) { adopted = urls; };
    const ActivityEvent done = end([&](auto &, auto) {
        return JobOutcome{u"Pronto"_qs, u"1 arquivo"_qs, made};
    });
    EXPECT_EQ(done.symbol, u"checkmark.circle.fill");
    EXPECT_EQ(done.title, u"Pronto");
    EXPECT_EQ(done.fileURLs, made);
    EXPECT_EQ(adopted, made);

    const ActivityEvent bad = end([](auto &, auto) {
        return JobOutcome{u"Metade"_qs, {}, {}, FeedbackStyle::error};
    });
    EXPECT_EQ(bad.symbol, u"exclamationmark.triangle.fill");
    EXPECT_EQ(bad.title, u"Metade");
    const ActivityEvent failed =
        end([](auto &, auto) -> JobOutcome { throw LocalizedError(u"Sem espaço."_qs); });
    EXPECT_EQ(failed.title, u"Compactar: falhou");
    EXPECT_EQ(failed.detail, u"Sem espaço.");
    const ActivityEvent stopped =
        end([](auto &, auto) -> JobOutcome { throw FileError(u"/a"_qs, ECANCELED); });
    EXPECT_EQ(stopped.title, u"Compactar: cancelado");
    EXPECT_EQ(stopped.style, FeedbackStyle::info);
}

TEST_F(JobCenterTest, StopsWorkThatHeedsItAndShowsNothingOfItAfterwards)
{
    const QString id = run([](JobProgress &progress, std::stop_token stop) -> JobOutcome {
        progress.update(0.5, u"metade"_qs);
        while (!stop.stop_requested())
            std::this_thread::yield();
        progress.update(0.6, std::nullopt, true);
        throw Cancelled();
    });
    wait([&] { return activity.live().front().progress == 0.5; });
    activity.cancel(id);
    EXPECT_TRUE(activity.live().empty());
    bool cameBack = false;
    QObject::connect(&activity, &ActivityCenter::liveChanged, &activity,
                     [&] { cameBack = cameBack || !activity.live().empty(); });
    wait([&] { return jobs.runningCount() == 0; });
    EXPECT_FALSE(cameBack);
    EXPECT_EQ(activity.history().front().title, u"Compactar: cancelado");
}

TEST_F(JobCenterTest, CountsWhatACancelledJobHasDoneAllTheSame)
{
    const QString id = run([](auto &, std::stop_token stop) {
        while (!stop.stop_requested())
            std::this_thread::yield();
        return JobOutcome{u"Pronto"_qs};
    });
    activity.cancel(id);
    wait([&] { return jobs.runningCount() == 0; });
    EXPECT_EQ(activity.history().front().title, u"Pronto");
}

} // namespace velmo
