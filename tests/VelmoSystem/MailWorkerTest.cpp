#include "VelmoSystem/Mail/MailEngine.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/ScriptedStream.h"

#include <gtest/gtest.h>

namespace velmo {
namespace {

const QByteArray greeting = "* OK [CAPABILITY IMAP4rev1 IDLE MOVE UIDPLUS] ready";
const QByteArray items = "(UID FLAGS INTERNALDATE BODY.PEEK[]<0.65536>)";

QByteArray fetched(int uid)
{
    return "* 1 FETCH (UID " + QByteArray::number(uid) + " FLAGS () BODY[]<0> {14}\r\n" +
           "Subject: " + QByteArray::number(uid).rightJustified(3, '0') + "\r\n)";
}

class MailWorkerTest : public testing::Test {
protected:
    MailWorker &start()
    {
        worker = std::make_unique<MailWorker>(
            MailAccount::make("ana@example.org", {}),
            MailWorker::Surroundings{
                .connect =
                    [this](const QString &, int) {
                        connections.push_back(scheduler.elapsed().count());
                        ServerScript script;
                        if (!scripts.empty()) {
                            script = scripts.front();
                            scripts.pop_front();
                        } else {
                            script.closes();
                        }
                        return std::make_unique<ScriptedStream>(script);
                    },
                .readPassword = [this](const auto &answer) { answer(password); },
                .statusChanged =
                    [this](const MailStatus &status) {
                        const auto *offline = std::get_if<MailStatus::Offline>(&status.state);
                        statuses << (offline ? offline->reason
                                     : std::holds_alternative<MailStatus::Online>(status.state)
                                         ? "online"
                                         : "connecting");
                    },
                .loaded =
                    [this](const MailWorker::Loaded &result) { loaded = uids(result.messages); },
                .synced =
                    [this](const MailWorker::Synced &result) {
                        synced.push_back({uids(result.messages), result.flags, result.from});
                    },
            },
            scheduler);
        return *worker;
    }
    static std::vector<std::uint32_t> uids(const std::vector<MailMessage> &messages)
    {
        std::vector<std::uint32_t> all;
        for (const MailMessage &message : messages)
            all.push_back(message.uid);
        return all;
    }
    /// Up to the selected inbox with so many messages.
    static ServerScript connected(int exists)
    {
        ServerScript script = ServerScript().says(greeting);
        script.answers("LOGIN \"ana@example.org\" \"x\"",
                       {"* CAPABILITY IMAP4rev1 IDLE MOVE UIDPLUS"});
        script.answers("LIST \"\" \"*\"");
        script.answers("SELECT \"INBOX\"",
                       {"* " + QByteArray::number(exists) + " EXISTS", "* OK [UIDVALIDITY 1]"});
        return script;
    }

    struct Sync {
        std::vector<std::uint32_t> messages;
        MailInbox::Flags flags;
        std::uint32_t from;
        bool operator==(const Sync &) const = default;
    };

    ManualScheduler scheduler;
    std::deque<ServerScript> scripts;
    MailPassword password{"x", {}};
    std::vector<double> connections; ///< when
    QStringList statuses;
    std::vector<std::uint32_t> loaded;
    std::vector<Sync> synced;
    std::unique_ptr<MailWorker> worker;
};

TEST_F(MailWorkerTest, FollowsAnInbox)
{
    ServerScript script = connected(100);
    script.answers("FETCH 76:* " + items, {fetched(7), fetched(9)});
    script.hears("n5 IDLE").says("+").says("* 101 EXISTS").hears("DONE").says("n5 OK");
    script.tags = 5;
    script.answers("UID FETCH 7:* (UID FLAGS)",
                   {"* 1 FETCH (UID 7 FLAGS (\\Seen))", "* 2 FETCH (UID 12 FLAGS ())"});
    // One more arrives meanwhile, which no IDLE would announce.
    script.answers("UID FETCH 10:* " + items, {fetched(9), fetched(12), "* 102 EXISTS"});
    const QByteArrayList flags{"* 1 FETCH (UID 7 FLAGS ())", "* 2 FETCH (UID 12 FLAGS ())",
                               "* 3 FETCH (UID 13 FLAGS ())"};
    script.answers("UID FETCH 7:* (UID FLAGS)", flags);
    script.answers("UID FETCH 13:* " + items, {fetched(13)});
    script.hears("n10 IDLE").says("+").hears("DONE").says("n10 OK");
    script.tags = 10;
    script.answers("UID FETCH 7:* (UID FLAGS)", flags); // nothing new, so nothing is fetched
    script.hears("n12 IDLE").says("+");
    scripts = {script};
    start();
    EXPECT_EQ(statuses, (QStringList{"connecting", "online"}));
    EXPECT_EQ(loaded, (std::vector<std::uint32_t>{7, 9}));
    EXPECT_EQ(synced, (std::vector<Sync>{{{12}, {{7, true}, {12, false}}, 7},
                                         {{13}, {{7, false}, {12, false}, {13, false}}, 7}}));
    worker->refresh();
    EXPECT_EQ(synced.size(), 3);
    worker.reset();
    EXPECT_EQ(scheduler.pendingCount(), 0u);
    EXPECT_EQ(statuses.size(), 2) << "nobody hears of the end";
}

TEST_F(MailWorkerTest, LooksByItselfWhereTheServerCannotTell)
{
    ServerScript script = ServerScript().says("* OK [CAPABILITY IMAP4rev1] ready");
    script.answers("LOGIN \"ana@example.org\" \"x\"");
    script.answers("CAPABILITY", {"* CAPABILITY IMAP4rev1"});
    script.answers("LIST \"\" \"*\"");
    script.answers("SELECT \"INBOX\"", {"* 0 EXISTS"});
    for (int i = 0; i < 2; ++i) {
        script.answers("NOOP");
        script.answers("UID FETCH 1:* " + items);
    }
    scripts = {script};
    scheduler.advance(25s);
    start();
    EXPECT_EQ(statuses.back(), "online") << "an empty inbox";
    scheduler.advance(34s);
    EXPECT_TRUE(synced.empty());
    scheduler.advance(1s); // with all other accounts
    EXPECT_EQ(synced.size(), 1);
    worker->refresh();
    EXPECT_EQ(synced.size(), 2);
}

TEST_F(MailWorkerTest, ComesBackLaterEachTime)
{
    start();
    scheduler.advance(560s);
    EXPECT_EQ(connections, (std::vector<double>{0, 3, 10.5, 29.25, 76.125, 193.3125, 313.3125,
                                                433.3125, 553.3125}));
    EXPECT_EQ(statuses.mid(0, 3),
              (QStringList{"connecting", "O servidor fechou a conexão.", "connecting"}));

    connections.clear();
    scripts = {connected(0)};
    scripts.front().closes();
    scheduler.advance(360s); // online at 673.3, again after the 120 s that were due, then quickly
    EXPECT_EQ(connections.size(), 6);
    EXPECT_EQ(connections[2] - connections[1], 3);
}

TEST_F(MailWorkerTest, NoticesADeadNetwork)
{
    ServerScript script = connected(0);
    script.hears("n4 IDLE").says("+").hears("DONE"); // and nothing any more
    scripts = {script, {}, {}, {}, {}};
    start();
    scheduler.advance(149s);
    EXPECT_EQ(statuses.back(), "online");
    scheduler.advance(1s);
    EXPECT_EQ(statuses.back(), "Sem conexão com o servidor (o servidor não respondeu a tempo).");
    scheduler.advance(110s); // each greeting is awaited for 20 s
    EXPECT_EQ(connections, (std::vector<double>{0, 153, 176, 203.5, 242.25}));
    worker.reset();
    EXPECT_EQ(scheduler.pendingCount(), 0u);
}

TEST_F(MailWorkerTest, DoesNotHammerARefusedPassword)
{
    scripts = {ServerScript()
                   .says(greeting)
                   .hears("n1 LOGIN \"ana@example.org\" \"x\"")
                   .says("n1 NO [AUTHENTICATIONFAILED] Invalid credentials")};
    start();
    EXPECT_EQ(statuses.back(), "O servidor respondeu: Invalid credentials");
    scheduler.advance(299s);
    EXPECT_EQ(connections.size(), 1);
    scheduler.advance(1s);
    EXPECT_EQ(connections.size(), 2);
}

TEST_F(MailWorkerTest, NeedsAPassword)
{
    password = {{}, "O chaveiro está bloqueado."};
    start();
    EXPECT_EQ(statuses, QStringList{"O chaveiro está bloqueado."});
    password = {};
    scheduler.advance(3s);
    EXPECT_EQ(statuses.back(), "A senha não está no chaveiro. Conecte a conta de novo.");
    scheduler.advance(1'000s);
    EXPECT_EQ(statuses.size(), 2);
    EXPECT_TRUE(connections.empty());
}

} // namespace
} // namespace velmo
