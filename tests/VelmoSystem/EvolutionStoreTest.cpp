#include "VelmoSystem/Linux/Calendar/EvolutionStore.h"

#include "tests/VelmoSystem/EvolutionSession.h"
#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/XServer.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

const QString personal = QStringLiteral("system-calendar");

Date date(const char *text)
{
    return Date(Seconds(double(QDateTime::fromString(text, Qt::ISODate).toSecsSinceEpoch())));
}

QByteArray event(const QByteArray &uid, const QByteArray &title, const QByteArray &start,
                 const QByteArray &more = {})
{
    return "BEGIN:VEVENT\r\nUID:" + uid + "\r\nDTSTAMP:20260301T000000Z\r\nDTSTART" + start +
           "\r\nDURATION:PT1H\r\nSUMMARY:" + title + "\r\n" + more + "END:VEVENT\r\n";
}

QByteArray single(const QByteArray &uid, const QByteArray &day)
{
    return event(uid, uid, ":" + day + "T120000Z");
}

/// Two programs with the same calendars.
class EvolutionStoreTest : public testing::Test {
protected:
    explicit EvolutionStoreTest(EvolutionSession::Past past = EvolutionSession::Past::used)
        : session(past)
    {
        for (EvolutionStore *one : {&store, &other})
            one->watch(date("2026-03-01T00:00:00Z"), date("2026-03-31T00:00:00Z"));
    }

    /// Time goes on meanwhile, about as fast as it does.
    bool waitFor(const std::function<bool()> &condition, std::chrono::milliseconds patience = 20s)
    {
        return eventually(
            [&] {
                scheduler.advance(5ms);
                return condition();
            },
            patience);
    }
    void startBoth()
    {
        for (EvolutionStore *one : {&store, &other}) {
            one->start();
            ASSERT_TRUE(waitFor([&] { return one->defaultCalendar() == personal; }));
        }
    }
    /// What an edit said, once it did.
    QString outcome(const std::function<void(CalendarStore::Done)> &edit)
    {
        QStringList said;
        edit([&](const std::optional<QString> &problem) { said << problem.value_or("ok"); });
        EXPECT_TRUE(said.isEmpty()) << "it answers later";
        waitFor([&] { return !said.isEmpty(); });
        return said.join('|');
    }
    QString create(EvolutionStore &by, const QByteArray &component)
    {
        return outcome([&](auto done) { by.create(personal, component, done); });
    }
    QString modify(EvolutionStore &by, const QByteArray &component)
    {
        return outcome([&](auto done) { by.modify(personal, component, done); });
    }
    QString remove(EvolutionStore &by, const QString &uid, std::optional<QString> recurrence = {})
    {
        return outcome([&](auto done) { by.remove(personal, uid, recurrence, done); });
    }
    static QString text(const EvolutionStore &of, const QString &uid)
    {
        for (const StoredEvent &one : of.events()) {
            if (one.uid == uid)
                return QString::fromUtf8(one.text);
        }
        return {};
    }
    /// Waits for these titles of an event's components, in their order.
    void expectTitles(const EvolutionStore &of, const QString &uid, const QStringList &wanted)
    {
        QStringList titles;
        waitFor([&] {
            titles = text(of, uid).split("\r\n").filter("SUMMARY:");
            return titles.replaceInStrings("SUMMARY:", "") == wanted;
        });
        EXPECT_EQ(titles, wanted);
    }

    EvolutionSession session;
    ManualScheduler scheduler;
    QString chosen; ///< the user's calendar for new events
    EvolutionStore store{session.connect(), scheduler, [this](const auto &) { return chosen; }};
    EvolutionStore other{session.connect(), scheduler, [](const auto &) { return QString(); }};
};

class UnusedEvolutionTest : public EvolutionStoreTest {
protected:
    UnusedEvolutionTest() : EvolutionStoreTest(EvolutionSession::Past::unused) {}
};

} // namespace

TEST_F(EvolutionStoreTest, SeesWhatOthersDoAndTheySeeIt)
{
    startBoth();
    EXPECT_EQ(store.state(), CalendarStore::State::present);
    for (const auto &[one, another] : {std::pair(&store, &other), std::pair(&other, &store)}) {
        EXPECT_EQ(create(*one, event("um", "Café", ":20260310T120000Z")), "ok");
        expectTitles(*another, "um", {"Café"});
        EXPECT_EQ(modify(*one, event("um", "Chá", ";VALUE=DATE:20260311")), "ok");
        expectTitles(*another, "um", {"Chá"});
        EXPECT_EQ(remove(*one, "um"), "ok");
        expectTitles(*another, "um", {});
        EXPECT_EQ(remove(*one, "um"), "Compromisso não encontrado.");
    }
}

TEST_F(EvolutionStoreTest, KeepsASeriesTogetherWithItsExceptions)
{
    startBoth();
    const QByteArray zone = ";TZID=America/Sao_Paulo:";
    const auto series = [&](const QByteArray &title) {
        return event("s", title, zone + "20260302T120000", "RRULE:FREQ=DAILY;COUNT=8\r\n");
    };
    const auto exception = [&](const QByteArray &title, const QByteArray &day,
                               const QByteArray &original) {
        return event("s", title, zone + day + "T150000",
                     "RECURRENCE-ID" + zone + original + "T120000\r\n");
    };
    EXPECT_EQ(create(other, series("Todas")), "ok");
    expectTitles(store, "s", {"Todas"});
    EXPECT_EQ(modify(other, exception("Tarde", "20260303", "20260303")), "ok");
    expectTitles(store, "s", {"Todas", "Tarde"});
    // The server says nothing of one that leaves the watched time.
    EXPECT_EQ(modify(other, exception("Maio", "20260504", "20260304")), "ok");
    expectTitles(store, "s", {"Todas", "Tarde", "Maio"});
    EXPECT_EQ(remove(store, "s", "20260305T120000"), "ok");
    EXPECT_TRUE(waitFor([&] { return text(other, "s").contains("EXDATE"); }));
    EXPECT_EQ(modify(store, series("Novas")), "ok");
    expectTitles(other, "s", {"Novas", "Tarde", "Maio"});
    // It reports this as the end of the series.
    EXPECT_EQ(remove(store, "s", "20260303T120000"), "ok");
    expectTitles(other, "s", {"Novas", "Maio"});

    store.watch(date("2026-05-01T00:00:00Z"), date("2026-05-31T00:00:00Z"));
    expectTitles(store, "s", {"Novas", "Maio"});
    EXPECT_EQ(remove(store, "s"), "ok");
    expectTitles(store, "s", {});
    expectTitles(other, "s", {});
}

TEST_F(EvolutionStoreTest, KeepsWhatItShowsUntilAnotherTimeHasCome)
{
    startBoth();
    for (const char *day : {"20260310", "20260410"})
        EXPECT_EQ(create(other, single(day, day)), "ok");
    expectTitles(store, "20260310", {"20260310"});
    store.watch(date("2026-04-01T00:00:00Z"), date("2026-04-30T00:00:00Z"));
    bool wasEmpty = false;
    EXPECT_TRUE(waitFor([&] {
        wasEmpty = wasEmpty || store.events().empty();
        return !text(store, "20260410").isEmpty();
    }));
    EXPECT_FALSE(wasEmpty);
    EXPECT_EQ(text(store, "20260310"), QString());
}

TEST_F(EvolutionStoreTest, ListsTheCalendarsThatTheUserHasSwitchedOn)
{
    startBoth();
    const auto list = [&] {
        QStringList calendars;
        for (const StoredCalendar &calendar : store.calendars())
            calendars << calendar.title + (calendar.canEdit ? "" : " (lê)");
        return calendars.join(", ");
    };
    const auto become = [&](const QString &wanted) {
        EXPECT_TRUE(waitFor([&] { return list() == wanted; })) << list().toStdString();
    };
    become("Lembrete de aniversário & bodas (lê), Pessoal");
    EXPECT_EQ(outcome([&](auto done) {
                  store.create("birthdays", event("um", "X", ":20260310T120000Z"), done);
              }),
              "Este calendário não permite alterações.");
    chosen = "time";
    session.addSource("time", "[Data Source]\nDisplayName=O time\nParent=local-stub\n"
                              "[Calendar]\nBackendName=local\nColor=#ff0000\n");
    become("Lembrete de aniversário & bodas (lê), O time, Pessoal");
    EXPECT_EQ(store.calendars()[1].color, (CalendarColor{1, 0, 0}));
    EXPECT_TRUE(waitFor([&] { return store.defaultCalendar() == "time"; }));
    session.changeSource("birthdays", "[Calendar]", "[Calendar]\nSelected=false");
    session.changeSource("time", "O time", "Equipe");
    become("Equipe, Pessoal");
    session.changeSource("time", "Enabled=true", "Enabled=false");
    become("Pessoal");
    EXPECT_EQ(outcome([&](auto done) { store.remove("time", "um", {}, done); }),
              "Este calendário não está disponível agora.");

    // What the server refuses is tried again when it may have changed.
    session.addSource("outro", "[Data Source]\nDisplayName=A\n[Calendar]\nBackendName=nada\n");
    EXPECT_FALSE(waitFor([&] { return list() != "Pessoal"; }, 1500ms));
    EXPECT_EQ(store.state(), CalendarStore::State::present);
    session.changeSource("outro", "BackendName=nada", "BackendName=local");
    become("A, Pessoal");
}

TEST_F(EvolutionStoreTest, ComesBackWithTheProcesses)
{
    startBoth();
    EXPECT_EQ(create(other, single("um", "20260310")), "ok");
    expectTitles(store, "um", {"um"});
    for (const char *kind : {"Calendar", "Sources"}) {
        session.signal(kind, SIGKILL);
        EXPECT_TRUE(waitFor([&] { return store.state() == CalendarStore::State::failing; }));
        expectTitles(store, "um", {"um"});
        scheduler.advance(3s);
        EXPECT_TRUE(waitFor([&] { return store.state() == CalendarStore::State::present; }));
        EXPECT_TRUE(session.runs(kind));
    }
    EXPECT_EQ(create(other, single("dois", "20260310")), "ok");
    expectTitles(store, "dois", {"dois"});
    expectTitles(store, "um", {"um"});
}

TEST_F(EvolutionStoreTest, WaitsForNobody)
{
    startBoth();
    session.signal("Calendar", SIGSTOP);
    QStringList said;
    store.create(personal, single("um", "20260310"),
                 [&](const auto &problem) { said << problem.value_or("ok"); });
    EXPECT_FALSE(eventually([&] { return !said.isEmpty(); }, 200ms));
    scheduler.advance(20s);
    EXPECT_EQ(said, QStringList{"O calendário não respondeu. A alteração talvez ainda apareça."});
    EXPECT_EQ(remove(store, "um"), "Este calendário não está disponível agora.");
    scheduler.advance(300s);
    session.signal("Calendar", SIGCONT);
    expectTitles(store, "um", {"um"});
    EXPECT_EQ(store.state(), CalendarStore::State::present);
    EXPECT_EQ(said.size(), 1);
}

TEST_F(UnusedEvolutionTest, IsNotStartedButFollowedOnceItRuns)
{
    store.start();
    EXPECT_TRUE(waitFor([&] { return store.state() == CalendarStore::State::absent; }));
    EXPECT_FALSE(session.runs("Sources") || session.runs("Calendar"));
    session.start("Sources");
    EXPECT_TRUE(waitFor([&] { return store.defaultCalendar() == personal; }));
    EXPECT_EQ(store.state(), CalendarStore::State::present);
}

TEST(EvolutionStoreWithoutServer, IsAbsent)
{
    const PrivateBus bus;
    ManualScheduler scheduler;
    for (const QDBusConnection &connection : {bus.connect(), QDBusConnection("nowhere")}) {
        EvolutionStore store(connection, scheduler, [](const auto &) { return QString(); });
        EXPECT_EQ(store.state(), CalendarStore::State::unknown);
        store.start();
        EXPECT_TRUE(eventually([&] { return store.state() == CalendarStore::State::absent; }));
    }
}

TEST(EvolutionSources, TakesWhatAnAccountSaysForItsCalendars)
{
    const auto calendars = [](const QString &account, const QString &own) {
        QStringList found;
        for (const auto &one : EvolutionSources::calendars(
                 {{"conta", "[Data Source]\nParent=conta\n" + account},
                  {"agenda", "[Data Source]\nDisplayName=Mine\nDisplayName[pt]=Minha\\sagenda\n"
                             "Parent=conta\n[Calendar]\nBackendName=caldav\n" +
                                 own}}))
            found << one.id + ", " + one.title + ", " + one.address + (one.canEdit ? " edita" : "");
        return found.join('|');
    };
    const QString on = "agenda, Minha agenda, ";
    EXPECT_EQ(calendars("", ""), on);
    EXPECT_EQ(calendars("[Collection]\nIdentity=eu@um.br\n", ""), on + "eu@um.br");
    EXPECT_EQ(calendars("[Collection]\nIdentity=eu@um.br\n", "[Authentication]\nUser=b@um.br"),
              on + "b@um.br");
    const QString local = "[Calendar]\nBackendName=local\n";
    EXPECT_EQ(calendars("", local), on + " edita");
    EXPECT_EQ(calendars("", local + "[Local Backend]\nCustomFile=/a.ics\n"), on);
    for (const char *off : {"[Data Source]\nEnabled=false", "[Collection]\nCalendarEnabled=false"})
        EXPECT_EQ(calendars(off, ""), "");
    EXPECT_EQ(calendars("", "Enabled=false"), "");
}

TEST(EvolutionEvents, LeavesOutWhatIsBroken)
{
    const QString text = "BEGIN:VCALENDAR\r\nBEGIN:VEVENT\r\nDTSTART:20260310T120000Z\r\n"
                         "END:VEVENT\r\nBEGIN:VEVENT\r\nUID:a\r\nDTSTART:nunca\r\nEND:VEVENT\r\n" +
                         QString::fromUtf8(single("b\\,c", "20260310")) + "END:VCALENDAR\r\n";
    const auto components = EvolutionEvents::read(text);
    ASSERT_EQ(components.size(), 1U);
    EXPECT_EQ(components[0].uid, "b,c");
    EXPECT_EQ(EvolutionEvents::joined(components), single("b\\,c", "20260310"));
}

} // namespace velmo
