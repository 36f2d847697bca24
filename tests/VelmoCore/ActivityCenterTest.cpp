#include "VelmoCore/Activity/ActivityCenter.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

using Presentation = ActivityCenter::Presentation;

class ActivityCenterTest : public testing::Test {
protected:
    QString path() const { return m_folder.path("history.json"); }

    ActivityEvent event(const QString &title, const std::vector<QUrl> &files = {}) const
    {
        return ActivityEvent::make(m_scheduler.now(), "checkmark", title, FeedbackStyle::success,
                                   "test", "detalhe", files);
    }

    static QString ids(const ActivityCenter &center)
    {
        QString ids;
        for (const LiveActivity &activity : center.live())
            ids += activity.id;
        return ids;
    }

    static QString titles(const ActivityCenter &center)
    {
        QString titles;
        for (const ActivityEvent &event : center.history())
            titles += event.title;
        return titles;
    }

    /// Seconds until the message on show goes, in steps of a tenth.
    double shownFor(const ActivityCenter &center)
    {
        const Date start = m_scheduler.now();
        while (center.feedback())
            m_scheduler.advance(0.1s);
        return (m_scheduler.now() - start).count();
    }

    TemporaryFolder m_folder;
    ManualScheduler m_scheduler;
    ActivityCenter m_center{{}, {}, m_scheduler, 7};
};

TEST_F(ActivityCenterTest, SortsByPriorityAndKeepsUpdatedRowsInPlace)
{
    m_center.upsert({.id = "a", .priority = 4});
    m_center.upsert({.id = "b", .priority = 4});
    m_center.upsert({.id = "c", .priority = 10});
    m_center.upsert({.id = "a", .progress = 0.5, .priority = 4});
    EXPECT_EQ(ids(m_center), "cab");
    EXPECT_EQ(m_center.live()[1].progress, 0.5);
    m_center.upsert({.id = "b", .priority = 11});
    EXPECT_EQ(ids(m_center), "bca");
}

TEST_F(ActivityCenterTest, TellsObserversOfRealChangesOnly)
{
    QString notified;
    QObject::connect(&m_center, &ActivityCenter::liveChanged, [&] { notified += 'l'; });
    QObject::connect(&m_center, &ActivityCenter::feedbackChanged, [&] { notified += 'f'; });
    QObject::connect(&m_center, &ActivityCenter::historyChanged, [&] { notified += 'h'; });
    const auto same = event("um");
    for (int twice = 0; twice < 2; ++twice)
        m_center.upsert({.id = "a"}, [] {});
    for (int twice = 0; twice < 2; ++twice)
        m_center.cancel("a");
    for (int twice = 0; twice < 2; ++twice)
        m_center.post(same, Presentation::transientOnly);
    for (int twice = 0; twice < 2; ++twice)
        m_center.dismissFeedback();
    EXPECT_EQ(notified, "llff");
    m_center.prune(m_scheduler.now());
    m_center.clearHistory();
    EXPECT_EQ(notified, "llff");
    m_center.post(same, Presentation::historyOnly);
    EXPECT_EQ(notified, "llffh");
}

TEST_F(ActivityCenterTest, CancelsThroughTheHandlerThatWasGivenLast)
{
    int calls = 0;
    m_center.upsert({.id = "a"}, [] { ADD_FAILURE() << "replaced"; });
    m_center.upsert({.id = "a"}, [&] {
        ++calls;
        EXPECT_EQ(ids(m_center), "");
        m_center.finish("a", event("Cancelado"));
    });
    m_center.upsert({.id = "a", .priority = 5});
    m_center.cancel("a");
    m_center.cancel("a");
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(titles(m_center), "Cancelado");

    m_center.upsert({.id = "b"}, [] { ADD_FAILURE() << "of a finished activity"; });
    m_center.finish("b");
    m_center.upsert({.id = "b"});
    m_center.cancel("b");
}

TEST_F(ActivityCenterTest, ShowsAMessageForItsTime)
{
    const std::vector files{QUrl("file:///a.pdf")};
    auto emptyList = event("vazio");
    emptyList.fileURLs.emplace();
    const std::tuple<ActivityEvent, Seconds, double> cases[] = {{event("a"), 2.4s, 2.4},
                                                                {event("a", files), 2.4s, 8},
                                                                {event("a", files), 10s, 10},
                                                                {emptyList, 2.4s, 2.4}};
    for (const auto &[event, duration, shown] : cases) {
        ActivityCenter center({}, {}, m_scheduler, 7, duration);
        center.post(event);
        EXPECT_NEAR(shownFor(center), shown, 1e-6);
    }
}

TEST_F(ActivityCenterTest, ReplacesTheMessageAndStartsItsTimeAnew)
{
    const auto first = event("um");
    m_center.post(first);
    m_scheduler.advance(2s);
    m_center.post(event("dois"));
    m_center.dismissFeedback(first.id);
    EXPECT_NEAR(shownFor(m_center), 2.4, 1e-6);

    m_center.post(first);
    m_center.dismissFeedback(first.id);
    EXPECT_FALSE(m_center.feedback());
    EXPECT_EQ(m_scheduler.pendingCount(), 0U);
}

TEST_F(ActivityCenterTest, KeepsAMessageThatAnObserverPostsInReply)
{
    QObject::connect(&m_center, &ActivityCenter::feedbackChanged, [&] {
        if (m_center.feedback() && m_center.feedback()->title == "um")
            m_center.post(event("dois", {QUrl("file:///a")}), Presentation::transientOnly);
    });
    m_center.post(event("um"));
    EXPECT_NEAR(shownFor(m_center), 8, 1e-6);
}

TEST_F(ActivityCenterTest, ForgetsOldEventsAndTheHundredAndFirst)
{
    m_center.post(event("velho"));
    m_scheduler.advance(std::chrono::days{3});
    m_center.post(event("novo"));
    m_center.setRetentionDays(3);
    m_center.prune(m_scheduler.now());
    EXPECT_EQ(titles(m_center), "novovelho") << "the cut-off itself is kept";
    m_center.prune(m_scheduler.now() + 1s);
    EXPECT_EQ(titles(m_center), "novo");
    m_center.setRetentionDays(-5);
    m_center.prune(m_scheduler.now());
    EXPECT_EQ(titles(m_center), "novo");
    for (int i = 1; i <= 100; ++i)
        m_center.post(event(QString::number(i)));
    EXPECT_EQ(m_center.history().size(), 100U);
    EXPECT_EQ(m_center.history().front().title, "100");
    EXPECT_EQ(m_center.history().back().title, "1");
}

TEST_F(ActivityCenterTest, SavesABurstOnceAndReadsItBack)
{
    const std::vector files{QUrl("file:///a%20b.pdf")};
    {
        ActivityCenter center(path(), {}, m_scheduler, 7);
        center.post(event("um", files));
        m_scheduler.advance(0.4s);
        center.post(event("dois"), Presentation::historyOnly);
        EXPECT_EQ(center.feedback()->title, "um");
        center.post(event("breve"), Presentation::transientOnly);
        EXPECT_EQ(center.feedback()->title, "breve");
        m_scheduler.advance(0.4s);
        EXPECT_TRUE(m_folder.names().isEmpty());
        m_scheduler.advance(0.1s);
    }

    ActivityCenter reread(path(), {}, m_scheduler, 7);
    EXPECT_EQ(titles(reread), "doisum");
    EXPECT_EQ(reread.history()[1].fileURLs, files);
    m_scheduler.advance(std::chrono::days{1});
    EXPECT_EQ(titles(ActivityCenter(path(), {}, m_scheduler, 0)), "");
    reread.clearHistory();
    reread.flush();
    EXPECT_EQ(titles(ActivityCenter(path(), {}, m_scheduler, 7)), "");
}

} // namespace
} // namespace velmo
