#include "VelmoCore/Activity/ActivityCenter.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace velmo {

using testing::ElementsAre;
using testing::IsEmpty;
using Presentation = ActivityCenter::Presentation;

namespace {

class ActivityCenterTest : public testing::Test {
protected:
    ActivityCenter center(std::optional<ActivityCenter::Store> store = std::nullopt, int days = 7)
    {
        return {m_scheduler, std::move(store), days};
    }

    ActivityCenter::Store store() const
    {
        return ActivityCenter::Store(m_folder.path(u"activity-history.json"_qs), std::nullopt);
    }

    ActivityEvent event(const QString &title, const std::vector<QUrl> &files = {}) const
    {
        return ActivityEvent::make(m_scheduler.now(), u"checkmark"_qs, title,
                                   FeedbackStyle::success, u"test"_qs, u"detalhe"_qs, files);
    }

    static LiveActivity activity(const QString &id, int priority)
    {
        return {.id = id, .source = u"test"_qs, .priority = priority};
    }

    template <class Record>
    static std::vector<QString> all(const std::vector<Record> &records, QString Record::*field)
    {
        std::vector<QString> texts;
        std::ranges::transform(records, std::back_inserter(texts), field);
        return texts;
    }

    static auto ids(const ActivityCenter &center) { return all(center.live(), &LiveActivity::id); }

    static auto titles(const ActivityCenter &center)
    {
        return all(center.history(), &ActivityEvent::title);
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
};

} // namespace

TEST_F(ActivityCenterTest, SortsByPriorityAndKeepsUpdatedRowsInPlace)
{
    auto center = this->center();
    center.upsert(activity(u"a"_qs, 4));
    center.upsert(activity(u"b"_qs, 4));
    center.upsert(activity(u"c"_qs, 10));
    EXPECT_THAT(ids(center), ElementsAre(u"c"_qs, u"a"_qs, u"b"_qs));

    center.upsert({.id = u"a"_qs, .progress = 0.5, .priority = 4});
    EXPECT_THAT(ids(center), ElementsAre(u"c"_qs, u"a"_qs, u"b"_qs));
    EXPECT_EQ(center.live()[1].progress, 0.5);
    center.upsert(activity(u"b"_qs, 11));
    EXPECT_THAT(ids(center), ElementsAre(u"b"_qs, u"c"_qs, u"a"_qs));
}

TEST_F(ActivityCenterTest, TellsObserversOfRealChangesOnly)
{
    auto center = this->center();
    int live = 0;
    int feedback = 0;
    int history = 0;
    QObject::connect(&center, &ActivityCenter::liveChanged, &center, [&] { ++live; });
    QObject::connect(&center, &ActivityCenter::feedbackChanged, &center, [&] { ++feedback; });
    QObject::connect(&center, &ActivityCenter::historyChanged, &center, [&] { ++history; });

    center.upsert(activity(u"a"_qs, 4));
    center.upsert(activity(u"a"_qs, 4), [] {});
    center.finish(u"unknown"_qs);
    center.cancel(u"unknown"_qs);
    EXPECT_EQ(live, 1);
    center.cancel(center.live().front().id);
    EXPECT_EQ(live, 2);

    const auto same = event(u"um"_qs);
    center.post(same, Presentation::transientOnly);
    center.post(same, Presentation::transientOnly);
    EXPECT_EQ(feedback, 1);
    center.dismissFeedback();
    center.dismissFeedback();
    EXPECT_EQ(feedback, 2);

    center.prune(m_scheduler.now());
    center.clearHistory();
    EXPECT_EQ(history, 0);
    center.post(event(u"dois"_qs), Presentation::historyOnly);
    EXPECT_EQ(history, 1);
}

TEST_F(ActivityCenterTest, CancelsThroughTheHandlerThatWasGivenLast)
{
    auto center = this->center();
    int early = 0;
    int late = 0;
    center.upsert(activity(u"a"_qs, 4), [&] { ++early; });
    center.upsert(activity(u"a"_qs, 4), [&] {
        ++late;
        EXPECT_THAT(center.live(), IsEmpty());
        center.finish(u"a"_qs, event(u"Cancelado"_qs));
    });
    center.upsert(activity(u"a"_qs, 5));
    center.cancel(u"a"_qs);
    center.cancel(u"a"_qs);
    EXPECT_EQ(late, 1);
    EXPECT_EQ(center.feedback()->title, u"Cancelado"_qs);
    EXPECT_THAT(titles(center), ElementsAre(u"Cancelado"_qs));

    center.upsert(activity(u"b"_qs, 4), [&] { ++early; });
    center.finish(u"b"_qs);
    center.upsert(activity(u"b"_qs, 4));
    center.cancel(u"b"_qs);
    EXPECT_EQ(early, 0);
}

TEST_F(ActivityCenterTest, ShowsAMessageForItsTime)
{
    const std::vector<QUrl> files{QUrl::fromLocalFile(u"/tmp/a.pdf"_qs)};
    auto emptyList = event(u"vazio"_qs);
    emptyList.fileURLs.emplace();
    const struct {
        ActivityEvent event;
        Seconds duration;
        double shown;
    } cases[] = {{event(u"a"_qs), 2.4s, 2.4},
                 {event(u"a"_qs, files), 2.4s, 8.0},
                 {event(u"a"_qs, files), 10s, 10.0},
                 {event(u"a"_qs), 10s, 10.0},
                 {emptyList, 2.4s, 2.4}};
    for (const auto &[event, duration, shown] : cases) {
        ActivityCenter center(m_scheduler, std::nullopt, 7, duration);
        center.post(event);
        EXPECT_NEAR(shownFor(center), shown, 1e-6);
        EXPECT_FALSE(center.history()[0].fileURLs && center.history()[0].fileURLs->empty());
    }
}

TEST_F(ActivityCenterTest, ReplacesTheMessageAndStartsItsTimeAnew)
{
    auto center = this->center();
    const auto first = event(u"um"_qs);
    center.post(first);
    m_scheduler.advance(2s);
    center.post(event(u"dois"_qs));
    center.dismissFeedback(first.id);
    m_scheduler.advance(2s);
    ASSERT_TRUE(center.feedback());
    EXPECT_EQ(center.feedback()->title, u"dois"_qs);
    EXPECT_NEAR(shownFor(center), 0.4, 1e-6);

    center.post(first);
    center.dismissFeedback(first.id);
    EXPECT_FALSE(center.feedback());
    EXPECT_EQ(m_scheduler.pendingCount(), 0U);
}

TEST_F(ActivityCenterTest, KeepsAMessageThatAnObserverPostsInReply)
{
    auto center = this->center();
    QObject::connect(&center, &ActivityCenter::feedbackChanged, &center, [&] {
        if (center.feedback() && center.feedback()->title == u"um"_qs)
            center.post(event(u"dois"_qs, {QUrl(u"file:///a"_qs)}), Presentation::transientOnly);
    });
    center.post(event(u"um"_qs));
    EXPECT_NEAR(shownFor(center), 8.0, 1e-6);
}

TEST_F(ActivityCenterTest, ForgetsOldEventsAndTheHundredAndFirst)
{
    auto center = this->center();
    center.post(event(u"velho"_qs));
    m_scheduler.advance(std::chrono::days{3});
    center.post(event(u"novo"_qs));
    center.setRetentionDays(3);
    EXPECT_EQ(center.history().size(), 2U);
    center.prune(m_scheduler.now());
    EXPECT_EQ(center.history().size(), 2U) << "the cut-off itself is kept";
    center.prune(m_scheduler.now() + 1s);
    EXPECT_THAT(titles(center), ElementsAre(u"novo"_qs));

    center.setRetentionDays(-5);
    center.prune(m_scheduler.now());
    EXPECT_THAT(titles(center), ElementsAre(u"novo"_qs));
    for (int i = 1; i <= 100; ++i)
        center.post(event(QString::number(i)));
    EXPECT_EQ(center.history().size(), 100U);
    EXPECT_EQ(center.history().front().title, u"100"_qs);
    EXPECT_EQ(center.history().back().title, u"1"_qs);
}

TEST_F(ActivityCenterTest, SavesABurstOnceAndReadsItBack)
{
    auto center = this->center(store());
    center.post(event(u"um"_qs, {QUrl(u"file:///a%20b.pdf"_qs)}));
    m_scheduler.advance(0.4s);
    center.post(event(u"dois"_qs), Presentation::historyOnly);
    EXPECT_EQ(center.feedback()->title, u"um"_qs);
    center.post(event(u"breve"_qs), Presentation::transientOnly);
    EXPECT_EQ(center.feedback()->title, u"breve"_qs);
    m_scheduler.advance(0.4s);
    EXPECT_THAT(m_folder.names(), IsEmpty());
    m_scheduler.advance(0.1s);

    auto reread = this->center(store());
    EXPECT_THAT(titles(reread), ElementsAre(u"dois"_qs, u"um"_qs));
    EXPECT_EQ(reread.history()[1].fileURLs, center.history()[1].fileURLs);
    EXPECT_FALSE(reread.feedback());

    m_scheduler.advance(std::chrono::days{1});
    EXPECT_THAT(this->center(store(), 0).history(), IsEmpty());
    reread.clearHistory();
    reread.flush();
    EXPECT_EQ(m_folder.read(u"activity-history.json"_qs).trimmed(), "[]");
    EXPECT_EQ(m_scheduler.pendingCount(), 0U);
}

TEST_F(ActivityCenterTest, StartsEmptyOverADamagedFileAndLogsAFailedSave)
{
    m_folder.write(u"activity-history.json"_qs, "[{");
    auto center = this->center(store());
    EXPECT_THAT(center.history(), IsEmpty());

    m_folder.write(u"file"_qs, {});
    static QString logged;
    auto blocked = this->center(
        ActivityCenter::Store(m_folder.path(u"file/activity-history.json"_qs), std::nullopt));
    blocked.post(event(u"um"_qs));
    const auto earlier = qInstallMessageHandler(
        [](QtMsgType, const QMessageLogContext &, const QString &text) { logged = text; });
    blocked.flush();
    qInstallMessageHandler(earlier);
    EXPECT_TRUE(logged.startsWith(u"Falha ao salvar histórico de atividade: "_qs));
    EXPECT_EQ(blocked.history().size(), 1U);
}

TEST(LiveActivity, ReckonsProgressAndRemainingTimeFromItsCountdown)
{
    const Date start{1000s};
    LiveActivity activity{.progress = 0.3};
    EXPECT_EQ(activity.progressAt(start), 0.3);
    EXPECT_EQ(activity.remainingAt(start), std::nullopt);

    const struct {
        Seconds length;
        Seconds at;
        double progress;
        Seconds remaining;
    } cases[] = {{60s, 15s, 0.25, 45s},
                 {60s, -5s, 0, 65s},
                 {60s, 60s, 1, 0s},
                 {60s, 90s, 1, 0s},
                 {0s, -5s, 1, 5s}};
    for (const auto &[length, at, progress, remaining] : cases) {
        activity.countdown = DateRange{start, start + length};
        EXPECT_EQ(activity.progressAt(start + at), progress);
        EXPECT_EQ(activity.remainingAt(start + at), remaining);
    }
}

} // namespace velmo
