#include "VelmoSystem/Calendar/CalendarService.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Calendar/CalendarError.h"
#include "VelmoSystem/Calendar/EventAlerts.h"
#include "VelmoSystem/Notifications/SystemNotifier.h"
#include "VelmoSystem/Ports/FileViewer.h"

#include "tests/support/FakeCalendarStore.h"
#include "tests/support/FakeDevices.h"
#include "tests/support/FakeDownloader.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <thread>

namespace velmo {
namespace {

const QUrl address("https://agenda.example/feriados.ics");
const StoredCalendar mine{"pessoal", "Pessoal", {0.5, 0.5, 1}, true, {}};

QByteArray event(const QByteArray &title, const QDateTime &start, const QByteArray &more = {})
{
    return "BEGIN:VEVENT\r\nUID:" + title + "\r\nSUMMARY:" + title +
           "\r\nDTSTART:" + start.toUTC().toString("yyyyMMdd'T'HHmmss'Z'").toLatin1() +
           "\r\nDURATION:PT1H\r\n" + more + "END:VEVENT\r\n";
}

QByteArray feed(const QByteArray &events)
{
    return "BEGIN:VCALENDAR\r\nX-WR-CALNAME:Feriados\r\n" + events + "END:VCALENDAR\r\n";
}

class CalendarServiceTest : public testing::Test {
protected:
    CalendarServiceTest() { make(); }
    void make()
    {
        calendar.emplace(folder.path("calendar-subscriptions.json"), files, scheduler, store,
                         downloads, workspace);
        calendar->start();
    }
    QDateTime in(Seconds delay) const { return localDateTime(scheduler.now() + delay); }
    /// The reading is another thread's.
    void waitFor(const std::function<bool()> &isDone)
    {
        while (!isDone()) {
            scheduler.runPosted();
            std::this_thread::yield();
        }
    }
    QString titles() const
    {
        QStringList all;
        for (const CalendarEvent &one : calendar->upcoming())
            all << one.title;
        return all.join(u' ');
    }
    bool shows(const QString &expected)
    {
        waitFor([&] { return titles() == expected; });
        return true;
    }
    QString outcome(const std::function<void(CalendarService::Finished)> &start)
    {
        std::optional<QString> result;
        start([&](const auto &problem) { result = problem.value_or("ok"); });
        waitFor([&] { return result.has_value(); });
        return *result;
    }
    QString add(const QString &url, const QString &name = {})
    {
        return outcome([&](auto finished) { calendar->addSubscription(url, name, finished); });
    }
    QString update(const QString &id)
    {
        return outcome([&](auto finished) {
            calendar->update(id, "Novo", scheduler.now() + 7200s, 1800s, finished);
        });
    }
    QString idOf(const QString &title) const
    {
        const auto &all = calendar->upcoming();
        const auto found = std::ranges::find(all, title, &CalendarEvent::title);
        return found == all.end() ? QString() : found->id;
    }

    TemporaryFolder folder;
    ManualScheduler scheduler;
    FakeCalendarStore store{scheduler};
    FakeDownloader downloads{scheduler};
    FakeWorkspace workspace;
    DataFiles files{std::nullopt};
    std::optional<CalendarService> calendar;
};

TEST_F(CalendarServiceTest, MergesWhatTheStoreAndTheFeedsHave)
{
    downloads.answers[address] = {
        FakeDownloader::body(feed(event("B", in(7200s)) + event("A", in(3600s)) +
                                  event("Longe", in(20 * 24h)) + event("Foi", in(-48h))))};
    EXPECT_EQ(add("webcal://agenda.example/feriados.ics"), "ok");
    EXPECT_TRUE(shows("A B"));
    EXPECT_EQ(calendar->subscriptions().front().name, "Feriados");
    store.set({mine}, {{"pessoal", "B", event("B", in(7200s))},
                       {"pessoal", "C",
                        event("C", in(5400s),
                              "URL:https://meet.google.com/"
                              "abc-defg-hij\r\n")}});
    EXPECT_TRUE(shows("A C B")) << "B once";
    EXPECT_TRUE(calendar->find(idOf("B"))->canEdit) << "the store's";
    EXPECT_EQ(calendar->nextEvent(scheduler.now())->title, "A");
    EXPECT_EQ(calendar->currentEvent(scheduler.now() + 3700s)->title, "A");
    EXPECT_TRUE(calendar->find(idOf("C"))->meeting);

    calendar->removeSubscription(Uuid(calendar->subscriptions().front().id));
    EXPECT_TRUE(shows("C B"));
    EXPECT_EQ(store.windows.size(), 1) << "for " << CalendarService::upcomingTime.count() << " s";
}

TEST_F(CalendarServiceTest, KeepsTheLastGoodEventsOfAFeed)
{
    const auto good = FakeDownloader::body(feed(event("A", in(3600s))), {"\"1\"", {}});
    downloads.answers[address] = {good};
    EXPECT_EQ(add(address.toString()), "ok");
    EXPECT_TRUE(shows("A"));
    const Uuid id = calendar->subscriptions().front().id;
    const std::pair<Downloader::Result, QString> cases[] = {
        {FakeDownloader::refused(500), "O endereço respondeu com erro 500."},
        {FakeDownloader::body("<html>"), CalendarError::notACalendar()},
        {FakeDownloader::failed("Sem rede."), "Sem rede."},
        {FakeDownloader::unchanged(), ""},
        {FakeDownloader::body({}), CalendarError::notACalendar()},
        {FakeDownloader::body(feed(event("B", in(3600s)))), ""},
    };
    for (const auto &[answer, problem] : cases) {
        downloads.answers[address] = {answer};
        scheduler.advance(600s);
        EXPECT_EQ(calendar->subscriptionError(id).value_or(""), problem);
        EXPECT_EQ(downloads.requests.back().known.etag, "\"1\"");
    }
    EXPECT_TRUE(shows("B"));

    downloads.answers[address] = {good};
    make();
    EXPECT_TRUE(shows("A")) << "after a start the address is still known";
    downloads.answers[address] = {FakeDownloader::unchanged()};
    Q_EMIT workspace.didWake();
    scheduler.runPosted();
    EXPECT_TRUE(downloads.answers[address].empty());
}

TEST_F(CalendarServiceTest, RefusesAnAddressThatGivesNoCalendar)
{
    EXPECT_EQ(add("ftp://agenda.example/x"), CalendarError::invalidURL());
    downloads.answers[address] = {FakeDownloader::refused(404), FakeDownloader::body("<html>"),
                                  FakeDownloader::body("BEGIN:VCALENDAR\nEND:VCALENDAR")};
    EXPECT_EQ(add(address.toString()), "O endereço respondeu com erro 404.");
    EXPECT_EQ(add(address.toString()), CalendarError::notACalendar());
    EXPECT_TRUE(calendar->subscriptions().empty());
    EXPECT_FALSE(calendar->isConnected());
    EXPECT_EQ(add(address.toString()), "ok");
    EXPECT_EQ(calendar->subscriptions().front().name, "agenda.example");
}

TEST_F(CalendarServiceTest, ChangesOnlyWhatItMay)
{
    EXPECT_EQ(
        outcome([&](auto finished) { calendar->create("X", scheduler.now(), 3600s, finished); }),
        CalendarError::noCalendar());
    StoredCalendar fixed = mine;
    fixed.id = "fixo";
    fixed.canEdit = false;
    store.set({mine, fixed},
              {{"pessoal", "A", event("A", in(3600s))},
               {"pessoal", "S", event("S", in(4000s), "RRULE:FREQ=DAILY;COUNT=2\r\n")},
               {"fixo", "F", event("F", in(5000s))}});
    waitFor([&] { return calendar->upcoming().size() == 4; });
    EXPECT_EQ(update(idOf("A")), "ok");
    EXPECT_TRUE(store.modified.back().component.contains("SUMMARY:Novo"));
    EXPECT_FALSE(store.modified.back().component.contains("RECURRENCE-ID"));
    EXPECT_EQ(update(idOf("S")), "ok");
    EXPECT_TRUE(store.modified.back().component.contains("RECURRENCE-ID"));
    EXPECT_FALSE(store.modified.back().component.contains("RRULE"));
    EXPECT_EQ(update(idOf("F")), CalendarError::readOnly());
    EXPECT_EQ(update("ics:x:y:1"), CalendarError::readOnly());
    EXPECT_EQ(update("store:pessoal:nada"), CalendarError::notFound());
    EXPECT_EQ(store.modified.size(), 2);
    EXPECT_EQ(outcome([&](auto finished) { calendar->remove(idOf("S"), finished); }), "ok");
    EXPECT_EQ(store.removed.back().recurrence,
              QString(in(4000s).toUTC().toString("yyyyMMdd'T'HHmmss'Z'")));
    EXPECT_EQ(
        outcome([&](auto finished) { calendar->create("Novo", scheduler.now(), 3600s, finished); }),
        "ok");
    EXPECT_EQ(store.created.back().calendar, "pessoal");
}

TEST_F(CalendarServiceTest, RemovesForGoodOnlyAfterAWhile)
{
    store.set({mine}, {{"pessoal", "A", event("A", in(3600s))}});
    EXPECT_TRUE(shows("A"));
    QStringList problems;
    const auto failed = [&](const QString &problem) { problems << problem; };
    calendar->removeLater(idOf("A"), failed);
    EXPECT_EQ(titles(), "");
    EXPECT_EQ(calendar->removedTitle(), "A");
    EXPECT_TRUE(calendar->undoRemoval());
    EXPECT_TRUE(shows("A"));
    scheduler.advance(10s);
    EXPECT_TRUE(store.removed.empty());

    store.problem = "Sem permissão.";
    calendar->removeLater(idOf("A"), failed);
    scheduler.advance(5s);
    EXPECT_EQ(problems, QStringList{"Sem permissão."});
    EXPECT_TRUE(shows("A")) << "back again";
    store.problem.reset();
    calendar->removeLater(idOf("A"), failed);
    scheduler.advance(5s);
    EXPECT_EQ(store.removed.size(), 2);
    EXPECT_FALSE(calendar->undoRemoval());
    calendar->refresh();
    scheduler.runPosted();
    EXPECT_EQ(titles(), "") << "also before the store shows it";
}

TEST_F(CalendarServiceTest, AlertsOnceBeforeAnEventBegins)
{
    SettingsStore settings(folder.path("settings.json"), files, scheduler);
    ActivityCenter activity(std::nullopt, files, scheduler, 7);
    FakeNotifications server;
    SystemNotifier notifier(server, scheduler);
    struct : FileViewer {
        void reveal(const std::vector<QUrl> &) override {}
        void open(const QUrl &url) override { opened << url; }
        QList<QUrl> opened;
    } viewer;
    const EventAlerts alerts(*calendar, settings, notifier, activity, viewer, scheduler);
    store.set({mine}, {{"pessoal", "A", event("A", in(600s), "URL:https://zoom.us/j/1\r\n")},
                       {"pessoal", "B", event("B", in(100s))}});
    EXPECT_TRUE(shows("B A"));
    const QString key = "event." + idOf("A");
    scheduler.advance(299s);
    EXPECT_TRUE(server.shown.empty());
    EXPECT_TRUE(activity.live().empty());
    scheduler.advance(1s);
    ASSERT_EQ(server.shown.size(), 1) << "none of B, which was too near";
    EXPECT_EQ(server.shown.at(key).body, "Começa em 5 min · Zoom");
    ASSERT_EQ(activity.live().size(), 1);
    EXPECT_EQ(activity.live().front().title, "A");
    Q_EMIT server.activated(key, "join");
    EXPECT_EQ(viewer.opened, QList{QUrl("https://zoom.us/j/1")});
    server.shown.clear();
    calendar->refresh();
    waitFor([&, count = 0]() mutable { return ++count > 1000; });
    EXPECT_TRUE(server.shown.empty());
    scheduler.advance(300s);
    EXPECT_TRUE(activity.live().empty());
}

} // namespace
} // namespace velmo
