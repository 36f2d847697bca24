#include "VelmoSystem/Mail/IMAPConnection.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/ScriptedStream.h"

#include <gtest/gtest.h>

#include <exception>
#include <variant>

namespace velmo {
namespace {

const QByteArray greeting = "* OK [CAPABILITY IMAP4rev1 IDLE MOVE UIDPLUS SPECIAL-USE] ready";

class IMAPConnectionTest : public testing::Test {
protected:
    /// A connection to a server that greets and then goes on with the script.
    std::unique_ptr<IMAPConnection> connected(const ServerScript &script,
                                              const QByteArray &hello = greeting,
                                              qsizetype chunk = 1 << 20)
    {
        ServerScript whole = ServerScript().says(hello);
        whole.steps.insert(whole.steps.end(), script.steps.begin(), script.steps.end());
        auto connection = std::make_unique<IMAPConnection>(
            std::make_unique<ScriptedStream>(whole, chunk), scheduler);
        finish(connection->open());
        return connection;
    }

    /// What a task has come to, without waiting.
    template <class Result>
    Result finish(QCoro::Task<Result> task)
    {
        if (!task.isReady())
            throw std::logic_error("still waits");
        std::exception_ptr failure;
        std::conditional_t<std::is_void_v<Result>, std::monostate, std::optional<Result>> result;
        const auto take = [&]() -> QCoro::Task<> {
            try {
                if constexpr (std::is_void_v<Result>)
                    co_await task;
                else
                    result = co_await task;
            } catch (...) {
                failure = std::current_exception();
            }
        };
        take();
        if (failure)
            std::rethrow_exception(failure);
        if constexpr (!std::is_void_v<Result>)
            return *std::move(result);
    }
    /// The description of the error that it has ended with.
    template <class Result>
    QString error(QCoro::Task<Result> task)
    {
        try {
            finish(std::move(task));
            return "none";
        } catch (const IMAPError &error) {
            return error.description();
        } catch (const std::logic_error &error) {
            return error.what();
        }
    }

    ManualScheduler scheduler;
};

TEST_F(IMAPConnectionTest, LogsIn)
{
    auto script = ServerScript().answers("LOGIN \"ana\" \"a\\\\b\\\"ç\"");
    script.answers("CAPABILITY", {"* CAPABILITY IMAP4rev1 NAMESPACE IDLE"});
    auto connection = connected(script, "* OK ready");
    finish(connection->login("ana", "a\\b\"ç"));
    EXPECT_TRUE(connection->canIdle());

    const auto refusal = [&](const QByteArray &answer) {
        const auto refused = connected(ServerScript().hears("n1 LOGIN \"ana\" \"x\"").says(answer));
        return error(refused->login("ana", "x"));
    };
    EXPECT_EQ(refusal("n1 NO"), "O servidor respondeu: usuário ou senha de app incorretos.");
    EXPECT_EQ(refusal("n1 NO [AUTHENTICATIONFAILED] Invalid credentials"),
              "O servidor respondeu: Invalid credentials");
    EXPECT_EQ(refusal("n1 BAD <b>what</b>"), "O servidor respondeu: <b>what</b>");

    const auto plain = connected({}, "* OK [CAPABILITY IMAP4rev1 LOGINDISABLED] ready");
    EXPECT_EQ(error(plain->login("ana", "x")),
              "O servidor não aceita login com senha nesta conexão.");
    const auto strict = connected({});
    for (const QString &secret : {u"a\rb"_qs, u"a\nb"_qs, QString(u"a\0b"_qs.constData(), 3)}) {
        EXPECT_EQ(error(strict->login("ana", secret)),
                  "Nomes e senhas não podem ter quebras de linha.");
        EXPECT_EQ(error(strict->login(secret, "x")),
                  "Nomes e senhas não podem ter quebras de linha.");
    }
}

TEST_F(IMAPConnectionTest, FindsTheSpecialMailboxes)
{
    auto script = ServerScript().answers("LIST \"\" \"*\" RETURN (SPECIAL-USE)",
                                         {"* LIST (\\HasNoChildren \\Trash) \"/\" \"Bin\"",
                                          "* LIST (\\ALL) \"/\" All", "* LIST () \"/\" Trash"});
    EXPECT_EQ(finish(connected(script)->mailboxes()), (MailMailboxes{{}, "Bin", "All"}));

    script = ServerScript()
                 .hears("n1 LIST \"\" \"*\" RETURN (SPECIAL-USE)")
                 .says("n1 BAD parse error")
                 .hears("n2 LIST \"\" \"*\"")
                 .says("* LIST () \"/\" INBOX/Lixeira")
                 .says("* LIST () \"/\" {9}\r\nArquivo/x")
                 .says("* LIST () \"/\" \"[X]/Arquivados\"")
                 .says("n2 OK");
    const auto found = finish(connected(script)->mailboxes());
    EXPECT_EQ(found, (MailMailboxes{"[X]/Arquivados", "INBOX/Lixeira", {}}));
    EXPECT_EQ(found.archiveTarget(), "[X]/Arquivados");
}

/// A whole session, however its bytes are cut.
TEST_F(IMAPConnectionTest, ReadsMessagesHoweverTheyCome)
{
    const QByteArray body = "Subject: Oi\r\n\r\n}{3}\r\nn2 OK no\r\n";
    const QByteArray message = "* 3 FETCH (UID 9 FLAGS (\\Seen) INTERNALDATE "
                               "\"17-Jul-2024 09:01:02 +0000\" BODY[]<0> {" +
                               QByteArray::number(body.size()) + "}\r\n" + body + ")";
    for (qsizetype chunk = 1; chunk < 300; chunk += chunk < 40 ? 1 : 13) {
        auto script = ServerScript().answers(
            "SELECT \"INBOX\"", {"* 3 EXISTS", "* OK [UIDVALIDITY 42] here", "* 0 RECENT"});
        script.answers("FETCH 1:* (UID FLAGS INTERNALDATE BODY.PEEK[]<0.65536>)",
                       {message, "* 2 FETCH (FLAGS ())", "* 2 FETCH (UID 5 FLAGS ())"});
        script.answers("UID FETCH 9:* (UID FLAGS)",
                       {"* 3 FETCH (UID 9 FLAGS (\\Seen))", "* 4 FETCH (FLAGS () UID 12)"});
        const auto connection = connected(script, greeting, chunk);
        const auto selected = finish(connection->select("INBOX"));
        ASSERT_EQ(selected.exists, 3);
        ASSERT_EQ(selected.uidValidity, 42);
        const auto messages = finish(connection->fetchMessages("1:*", false, {}));
        ASSERT_EQ(messages.size(), 1);
        ASSERT_EQ(messages.front().subject, "Oi");
        ASSERT_EQ(messages.front().uid, 9);
        ASSERT_TRUE(messages.front().isRead);
        ASSERT_EQ(finish(connection->flags(9)), (MailInbox::Flags{{9, true}, {12, false}}));
    }
}

TEST_F(IMAPConnectionTest, MovesWithWhatTheServerHas)
{
    finish(connected(ServerScript().answers("UID MOVE 7 \"a \\\"b\""))->move(7, "a \"b"));
    auto script = ServerScript().answers("UID COPY 7 \"Bin\"");
    script.answers("UID STORE 7 +FLAGS.SILENT (\\Deleted)");
    finish(connected(script, "* OK [CAPABILITY IMAP4rev1]")->move(7, "Bin"));
    script.answers("UID EXPUNGE 7");
    finish(connected(script, "* OK [CAPABILITY IMAP4rev1 UIDPLUS]")->move(7, "Bin"));
}

TEST_F(IMAPConnectionTest, WaitsForNews)
{
    const auto connection = connected(ServerScript()
                                          .hears("n1 IDLE")
                                          .says("+ idling")
                                          .says("* OK Still here")
                                          .says("* 18 EXISTS")
                                          .says("* 19 EXISTS")
                                          .hears("DONE")
                                          .says("n1 OK done")
                                          .hears("n2 IDLE")
                                          .says("+")
                                          .hears("DONE")
                                          .says("n2 NO whatever")
                                          .hears("n3 IDLE")
                                          .says("n3 NO not supported"));
    EXPECT_EQ(
        finish(connection->idle(60s)),
        (std::vector<QByteArray>{"* OK Still here\r\n", "* 18 EXISTS\r\n", "* 19 EXISTS\r\n"}));
    auto silent = connection->idle(60s);
    scheduler.advance(59s);
    EXPECT_FALSE(silent.isReady());
    scheduler.advance(1s);
    EXPECT_TRUE(finish(std::move(silent)).empty());
    EXPECT_EQ(error(connection->idle(60s)), "O servidor respondeu: not supported");
    EXPECT_EQ(scheduler.pendingCount(), 0u);
    connection->finishIdle();
}

TEST_F(IMAPConnectionTest, GivesUpOnASilentServer)
{
    const QString tooLate = "Sem conexão com o servidor (o servidor não respondeu a tempo).";
    auto connection = connected(ServerScript().hears("n1 NOOP"));
    auto noop = connection->command("NOOP", 60s);
    scheduler.advance(61s);
    EXPECT_EQ(error(std::move(noop)), tooLate);
    EXPECT_EQ(error(connection->markRead(1)), tooLate) << "for good";

    connection = connected(ServerScript().hears("n1 IDLE").says("+").hears("DONE"));
    auto idle = connection->idle(60s);
    scheduler.advance(149s);
    EXPECT_FALSE(idle.isReady());
    scheduler.advance(1s);
    EXPECT_EQ(error(std::move(idle)), tooLate);
    EXPECT_EQ(scheduler.pendingCount(), 0u);

    connection = connected(ServerScript().hears("n1 NOOP"));
    noop = connection->command("NOOP", 60s);
    connection->cancel();
    EXPECT_EQ(error(std::move(noop)), "O servidor fechou a conexão.");
}

TEST_F(IMAPConnectionTest, BoundsWhatAServerMayDo)
{
    const auto answered = [&](const std::function<void(ServerScript &)> &answer) {
        ServerScript script = ServerScript().hears("n1 NOOP");
        answer(script);
        auto connection = connected(script);
        auto noop = connection->command("NOOP", 60s);
        const QString result = noop.isReady() ? error(std::move(noop)) : "waits";
        connection->cancel();
        return result;
    };
    const QString tooLong = "Sem conexão com o servidor (a resposta é longa demais).";
    EXPECT_EQ(answered([](auto &script) { script.says("* 1 FETCH (BODY[] {4294967296}"); }),
              tooLong);
    EXPECT_EQ(answered([](auto &script) { script.saysBytes(QByteArray(2 * 1024 * 1024, 'x')); }),
              "Sem conexão com o servidor (a linha é longa demais).");
    EXPECT_EQ(answered([](auto &script) {
                  const QByteArray line(1'000, 'x');
                  for (int i = 0; i < 34'000; ++i)
                      script.says(line);
              }),
              tooLong);
    EXPECT_EQ(answered([](auto &script) {
                  for (int i = 0; i < 100'000; ++i)
                      script.says("* 1 RECENT");
                  script.says("n1 OK");
              }),
              "none");
    EXPECT_EQ(answered([](auto &script) { script.says("n2 OK").says("x n1 OK"); }), "waits");
    EXPECT_EQ(answered([](auto &script) { script.says("* BYE over").closes(); }),
              "O servidor fechou a conexão.");
    EXPECT_EQ(answered([](auto &script) { script.saysBytes("* 1 FETCH ({5}\r\nab").closes(); }),
              "O servidor fechou a conexão.");

    ServerScript drip = ServerScript().hears("n1 NOOP");
    for (int i = 0; i < 700; ++i)
        drip.says("* 1 RECENT");
    class Slow : public ScriptedStream {
    public:
        Slow(const ServerScript &script, ManualScheduler &scheduler)
            : ScriptedStream(script), m_scheduler(scheduler)
        {
        }
        QCoro::Task<QByteArray> receive(qsizetype most) override
        {
            m_scheduler.advance(1s);
            return ScriptedStream::receive(most);
        }

    private:
        ManualScheduler &m_scheduler;
    };
    IMAPConnection slow(std::make_unique<Slow>(drip, scheduler), scheduler);
    EXPECT_EQ(error(slow.command("NOOP", 60s)),
              "Sem conexão com o servidor (o servidor não respondeu a tempo).");

    const auto web = std::make_unique<IMAPConnection>(
        std::make_unique<ScriptedStream>(ServerScript().says("HTTP/1.1 400 Bad Request")),
        scheduler);
    EXPECT_EQ(error(web->open()), "Sem conexão com o servidor (não é um servidor IMAP).");
}

} // namespace
} // namespace velmo
