#include "VelmoSystem/Mail/MailService.h"

#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoSystem/Linux/Net/NetworkThread.h"
#include "VelmoSystem/Linux/Net/TlsStream.h"

#include "tests/support/FakeDevices.h"
#include "tests/support/FakeServers.h"
#include "tests/support/FakeWorkspace.h"
#include "tests/support/MailServer.h"
#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/XServer.h"

#include <QTcpServer>

#include <gtest/gtest.h>

namespace velmo {

/// Nothing where the machine allows no mount of our own.
extern std::optional<OwnTrust> ownTrust;

namespace {

using namespace std::chrono_literals;

QByteArray mail(const QByteArray &subject, const QByteArray &text = "Oi.")
{
    return "From: Ana <ana@example.org>\r\nTo: eu@example.org\r\nMessage-ID: <" +
           QByteArray::number(qHash(subject + text)) + "@example.org>\r\nSubject: " + subject +
           "\r\n\r\n" + text + "\r\n";
}

class MailServiceTest : public testing::Test {
protected:
    /// As Orvane's, but for the key store.
    struct Servers : ServerAccess {
        ServiceThread &thread() override { return network; }
        std::unique_ptr<ByteStream> connect(const QString &host, int port) override
        {
            return std::make_unique<TlsStream>(host, port, network.scheduler());
        }
        std::unique_ptr<KeyItemStore> openKeyItems(const std::stop_token &) override
        {
            return std::make_unique<SharedKeyItems>(keys, mutex);
        }

        NetworkThread network;
        FakeKeyItems keys;
        std::mutex mutex;
    };

    MailServiceTest() { makeService(); }
    void SetUp() override
    {
        if (!ownTrust)
            GTEST_SKIP() << "needs a mount namespace";
    }
    void makeService()
    {
        service = std::make_unique<MailService>(folder.path("mail-accounts.json"), files, scheduler,
                                                servers, network, workspace);
        service->onNewMail = [this](const auto &messages) {
            for (const MailMessage &message : messages)
                announced << message.subject;
        };
        service->onError = [this](const QString &text) { errors << text; };
        service->start();
    }

    MailAccount account(const QString &user, int port) const
    {
        return MailAccount::make(user + "@localhost",
                                 {.host = "localhost", .port = port, .username = user});
    }
    /// What the test of an account ends with.
    QString tested(const MailAccount &account, const QString &password)
    {
        std::optional<QString> result;
        service->verify(account, password, [&](const auto &error) {
            result = error ? error->description() + u'|' + error->advice() : "ok";
        });
        EXPECT_TRUE(eventually([&] { return result.has_value(); }));
        return result.value_or("");
    }
    MailAccount add(const QString &user, int port)
    {
        const MailAccount added = account(user, port);
        std::optional<QString> result;
        service->add(added, "senha " + user,
                     [&](const auto &error) { result = error.value_or("ok"); });
        EXPECT_TRUE(eventually([&] { return result.has_value(); }));
        EXPECT_EQ(result, "ok");
        EXPECT_TRUE(becomesOnline(added.id));
        return added;
    }
    bool becomesOnline(const Uuid &id)
    {
        return eventually([&] { return service->status(id) == MailStatus{MailStatus::Online{}}; },
                          10s);
    }
    QStringList subjects() const
    {
        QStringList all;
        for (const MailMessage &message : service->messages())
            all << message.subject;
        all.sort();
        return all;
    }
    const MailMessage &named(const QString &subject) const
    {
        return *std::ranges::find(service->messages(), subject, &MailMessage::subject);
    }

    TemporaryFolder folder;
    SystemScheduler scheduler;
    Servers servers;
    FakeKeyItems &keys = servers.keys;
    std::mutex &mutex = servers.mutex;
    FakeNetwork network;
    FakeWorkspace workspace;
    DataFiles files{std::nullopt};
    QStringList announced;
    QStringList errors;
    std::unique_ptr<MailService> service;
};

TEST_F(MailServiceTest, ShowsWhatArrivesWithinASecond)
{
    MailServer server(ownTrust->issue("localhost"), {"ana"});
    for (int i = 0; i < 30; ++i)
        server.deliver("ana", mail("Antiga " + QByteArray::number(i)));
    const auto account = add("ana", server.port());
    ASSERT_TRUE(eventually([&] { return service->messages().size() == 25; }));
    EXPECT_TRUE(announced.isEmpty()) << "what was there before";
    EXPECT_EQ(service->unreadCount(), 25);

    server.deliver("ana", mail("Acesso", "Seu código de verificação é 482913."));
    EXPECT_TRUE(eventually([&] { return announced == QStringList{"Acesso"}; }, 1s));
    ASSERT_EQ(service->recentSignIns(scheduler.now()).size(), 1)
        << service->messages().front().snippet.toStdString();
    EXPECT_EQ(service->recentSignIns(scheduler.now()).front().code, "482913");

    service->perform(MailService::Action::markRead, named("Acesso"));
    EXPECT_TRUE(named("Acesso").isRead) << "at once";
    EXPECT_TRUE(eventually([&] { return server.files("ana").filter(":2,S").size() == 1; }));
    service->perform(MailService::Action::archive, named("Acesso"));
    service->perform(MailService::Action::trash, named("Antiga 29"));
    service->perform(MailService::Action::trash, named("Antiga 28"));
    EXPECT_EQ(service->messages().size(), 22);
    EXPECT_TRUE(service->undo(named("Antiga 27").id()) == false);
    const QString kept = QString(uuidText(account.id)) + "-29";
    EXPECT_TRUE(service->undo(kept));
    EXPECT_TRUE(subjects().contains("Antiga 28"));
    service->performPending();
    EXPECT_TRUE(eventually([&] {
        return server.files("ana", "Archive").size() == 1 &&
               server.files("ana", "Trash").size() == 1;
    }));
    EXPECT_FALSE(subjects().contains("Acesso"));
    EXPECT_TRUE(errors.isEmpty()) << errors.join(u'\n').toStdString();
}

TEST_F(MailServiceTest, GetsAWholeMessage)
{
    MailServer server(ownTrust->issue("localhost"), {"ana"});
    server.deliver("ana", mail("Longa", QByteArray(100'000, 'x') + " fim"));
    add("ana", server.port());
    std::optional<ParsedMail> whole;
    service->fetchWhole(named("Longa"), [&](const auto &mail, const auto &) { whole = mail; });
    EXPECT_TRUE(eventually([&] { return whole.has_value(); }));
    EXPECT_GT(whole->text.size(), 100'000);
    EXPECT_TRUE(whole->text.trimmed().endsWith("x fim")) << whole->text.right(20).toStdString();
    EXPECT_FALSE(named("Longa").isRead);
}

TEST_F(MailServiceTest, ComesBackAfterTheServerDoes)
{
    MailServer server(ownTrust->issue("localhost"), {"ana", "bia", "caio", "davi", "eva"});
    std::vector<MailAccount> accounts;
    for (const char *user : {"ana", "bia", "caio", "davi", "eva"}) {
        server.deliver(user, mail("Para " + QByteArray(user)));
        accounts.push_back(add(user, server.port()));
    }
    EXPECT_EQ(subjects(),
              (QStringList{"Para ana", "Para bia", "Para caio", "Para davi", "Para eva"}));
    server.kill();
    EXPECT_TRUE(eventually([&] {
        return std::ranges::all_of(accounts, [&](const auto &account) {
            return service->status(account.id) ==
                   MailStatus{MailStatus::Offline{"O servidor fechou a conexão."}};
        });
    }));
    server.deliver("eva", mail("Enquanto isso"));
    QTcpServer silent; // as where a network leads nowhere
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost, quint16(server.port())));
    int reached = 0;
    QObject::connect(&silent, &QTcpServer::newConnection, [&] { ++reached; });
    const auto returnToTheNetwork = [&] {
        network.set(NetworkMonitor::Path{.isSatisfied = false});
        network.set(NetworkMonitor::Path{.isSatisfied = true});
    };
    returnToTheNetwork();
    EXPECT_TRUE(eventually([&] { return reached >= 5; }));
    silent.close();
    server.start();
    returnToTheNetwork(); // they don't wait until they give up
    for (const auto &account : accounts)
        EXPECT_TRUE(becomesOnline(account.id));
    EXPECT_EQ(announced, QStringList{"Enquanto isso"}) << "once, and none of the others";

    server.kill();
    server.setPassword("eva", "outra");
    server.start();
    service->stop();
    service->start();
    EXPECT_TRUE(eventually(
        [&] {
            const auto status = service->status(accounts.back().id);
            const auto *offline = std::get_if<MailStatus::Offline>(&status.state);
            return offline && offline->reason.contains("Authentication failed");
        },
        10s))
        << service->status(accounts.back().id).state.index();
}

TEST_F(MailServiceTest, KeepsItsAccounts)
{
    MailServer server(ownTrust->issue("localhost"), {"ana"});
    server.deliver("ana", mail("Oi"));
    const auto first = add("ana", server.port());
    const auto second = add("ana", server.port());
    EXPECT_EQ(service->accounts(), std::vector{second}) << "one an address";
    EXPECT_TRUE(eventually([&] {
        const std::lock_guard lock(mutex);
        return keys.entries.size() == 1 &&
               keys.entries.begin()->first == "app.orvane.mail/" + uuidText(second.id) &&
               keys.entries.begin()->second.label == "Orvane — e-mail";
    }));
    EXPECT_TRUE(eventually([&] { return folder.names().contains("mail-accounts.json"); }));
    EXPECT_FALSE(folder.read("mail-accounts.json").contains("senha"));

    service.reset();
    makeService();
    EXPECT_TRUE(becomesOnline(second.id));
    EXPECT_EQ(subjects(), QStringList{"Oi"});

    {
        const std::lock_guard lock(mutex);
        keys.entries.clear();
    }
    service->stop();
    service->start();
    EXPECT_TRUE(eventually([&] {
        return service->status(second.id) ==
               MailStatus{
                   MailStatus::Offline{"A senha não está no chaveiro. Conecte a conta de novo."}};
    }));
    service->remove(second.id);
    EXPECT_TRUE(service->accounts().empty());
    EXPECT_TRUE(subjects().isEmpty());
}

TEST(TlsStream, GivesUpOnASilentServer)
{
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    ManualScheduler scheduler;
    TlsStream stream("localhost", silent.serverPort(), scheduler);
    const auto open = stream.open();
    EXPECT_TRUE(eventually([&] { return silent.hasPendingConnections(); }));
    scheduler.advance(14s);
    EXPECT_FALSE(open.isReady());
    scheduler.advance(1s);
    EXPECT_TRUE(open.isReady());
    EXPECT_EQ(scheduler.pendingCount(), 0u);
}

TEST_F(MailServiceTest, TrustsNobodyElse)
{
    MailServer good(ownTrust->issue("localhost"), {"ana"});
    EXPECT_EQ(tested(account("ana", good.port()), "senha ana"), "ok");
    EXPECT_TRUE(tested(account("ana", good.port()), "errada").endsWith("use uma senha de app."));
    auto elsewhere = account("ana", good.port());
    elsewhere.host = "nowhere.invalid";
    EXPECT_TRUE(tested(elsewhere, "x").endsWith("|Confira o endereço do servidor."));

    using Fault = OwnTrust::Fault;
    for (const Fault fault : {Fault::selfSigned, Fault::expired, Fault::sha1}) {
        MailServer server(ownTrust->issue("localhost", fault), {"ana"});
        const QString result = tested(account("ana", server.port()), "senha ana");
        EXPECT_TRUE(result.contains("não é confiável")) << int(fault) << result.toStdString();
    }
    MailServer other(ownTrust->issue("example.org"), {"ana"});
    EXPECT_TRUE(tested(account("ana", other.port()), "x").contains("não é confiável"));
    EXPECT_TRUE(keys.entries.empty());
    EXPECT_TRUE(service->accounts().empty());
}

} // namespace
} // namespace velmo
