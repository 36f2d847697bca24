#include "VelmoCore/Mail/MailInbox.h"

#include "VelmoCore/Mail/MailAccount.h"
#include "VelmoCore/Mail/MailURLs.h"

#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <ranges>

namespace velmo {
namespace {

using Uids = std::vector<std::uint32_t>;

const Date now{1'773'480'000s};

class MailInboxTest : public testing::Test {
protected:
    /// As old as its number is below 1000, in minutes.
    MailMessage message(std::uint32_t uid, bool isRead = false) const
    {
        MailMessage message;
        message.accountID = account;
        message.uid = uid;
        message.isRead = isRead;
        message.date = now - (1'000. - uid) * 60s;
        return message;
    }
    std::vector<MailMessage> messages(const Uids &uids) const
    {
        std::vector<MailMessage> all;
        for (const auto uid : uids)
            all.push_back(message(uid));
        return all;
    }
    static Uids uids(const std::vector<MailMessage> &messages)
    {
        Uids all;
        for (const MailMessage &one : messages)
            all.push_back(one.uid);
        return all;
    }
    Uids uids() const { return uids(inbox.messages()); }

    const Uuid account = makeUuid();
    const Uuid other = makeUuid();
    MailInbox inbox;
};

TEST_F(MailInboxTest, KnowsWhatIsNew)
{
    EXPECT_EQ(inbox.uidRange(account), (MailInbox::Range{0, 0}));
    EXPECT_TRUE(inbox.load(account, messages({990, 991}), 7).empty()) << "the first sight";
    EXPECT_EQ(uids(inbox.sync(account, messages({992, 991}), {}, 0)), Uids{992});
    EXPECT_EQ(uids(), (Uids{992, 991, 990}));
    EXPECT_TRUE(inbox.sync(account, messages({992}), {}, 0).empty()) << "once";
    EXPECT_EQ(uids(inbox.load(account, messages({992, 993}), 7)), Uids{993}) << "after a break";
    EXPECT_EQ(uids(), (Uids{993, 992}));
    EXPECT_TRUE(inbox.load(account, messages({995}), 8).empty()) << "numbered afresh";

    inbox.sync(account, {}, {}, 995); // gone on the server
    EXPECT_TRUE(uids().empty());
    EXPECT_EQ(inbox.uidRange(account), (MailInbox::Range{0, 995})) << "still isn't new";
    EXPECT_TRUE(inbox.sync(account, messages({995}), {{995, true}}, 0).empty());
}

TEST_F(MailInboxTest, FollowsWhatHappensElsewhere)
{
    inbox.load(account, messages({990, 991, 992}), 7);
    MailMessage foreign = message(999);
    foreign.accountID = other;
    inbox.load(other, {foreign}, 1);
    inbox.sync(account, {}, {{991, true}}, 991);
    EXPECT_EQ(uids(), (Uids{999, 991, 990}));
    EXPECT_EQ(inbox.unreadCount(), 2);
    EXPECT_TRUE(inbox.find(message(991).id())->isRead);
    EXPECT_EQ(inbox.uidRange(account), (MailInbox::Range{990, 992}));
    inbox.remove(account);
    EXPECT_EQ(uids(), Uids{999});
}

TEST_F(MailInboxTest, KeepsTheLatest)
{
    Uids all;
    for (std::uint32_t uid = 900; uid < 930; ++uid)
        all.push_back(uid);
    inbox.load(account, messages(all), 7);
    EXPECT_EQ(uids().size(), MailInbox::mostMessages);
    EXPECT_EQ(inbox.uidRange(account), (MailInbox::Range{905, 929}));
    inbox.sync(account, messages({930}), {}, 0);
    EXPECT_EQ(inbox.uidRange(account), (MailInbox::Range{906, 930}));
}

TEST_F(MailInboxTest, KeepsAwayWhatIsTakenUntilItIsGivenBack)
{
    inbox.load(account, messages({990, 991}), 7);
    const QString id = message(990).id();
    EXPECT_TRUE(inbox.take(id));
    EXPECT_FALSE(inbox.take(id));
    inbox.load(account, messages({990, 991}), 7); // the server doesn't know yet
    EXPECT_EQ(uids(), Uids{991});
    inbox.giveBack(id);
    inbox.giveBack(id);
    EXPECT_EQ(uids(), (Uids{991, 990}));

    inbox.take(id);
    inbox.load(account, messages({990}), 8);
    EXPECT_EQ(uids(), Uids{990}) << "another message under that number";
    inbox.take(id);
    inbox.remove(account);
    inbox.giveBack(id);
    EXPECT_TRUE(uids().empty()) << "of an account that has gone";
}

TEST_F(MailInboxTest, AnnouncesWhatIsYoungAndUnread)
{
    const auto announced =
        MailInbox::announced({message(999), message(998, true), message(970), message(971)}, now);
    EXPECT_EQ(uids(announced), (Uids{999, 971}));
}

TEST_F(MailInboxTest, OffersEachSignInOnce)
{
    auto first = message(991);
    auto again = message(993);
    first.code = again.code = QStringLiteral("123456");
    auto link = message(994);
    link.signInLink = QUrl(QStringLiteral("https://example.com/login?t=1"));
    auto old = message(990);
    old.code = QStringLiteral("777777");
    inbox.load(account, {old, first, again, link, message(999)}, 7);
    EXPECT_EQ(uids(inbox.recentSignIns(now)), (Uids{994, 993}));
    inbox.useSignIn(first);
    EXPECT_EQ(uids(inbox.recentSignIns(now)), Uids{994});
    inbox.useSignIn(link);
    EXPECT_TRUE(inbox.recentSignIns(now).empty());
}

TEST(MailAccount, FollowsFromTheAddress)
{
    const std::vector<std::tuple<QString, MailProvider, QString>> cases{
        {" Ana@Gmail.com\n", MailProvider::gmail, "imap.gmail.com"},
        {"a@googlemail.com", MailProvider::gmail, "imap.gmail.com"},
        {"a@mail.gmail.com", MailProvider::other, "imap.mail.gmail.com"},
        {"a@me.com", MailProvider::icloud, "imap.mail.me.com"},
        {"a@yahoo.com.br", MailProvider::yahoo, "imap.mail.yahoo.com"},
        {"a@yahoo", MailProvider::other, "imap.yahoo"},
        {"a@rocketmail.com", MailProvider::yahoo, "imap.mail.yahoo.com"},
        {"a@fastmail.fm", MailProvider::fastmail, "imap.fastmail.com"},
        {"a@zohocorp.com", MailProvider::zoho, "imap.zoho.com"},
        {"\"a@b\"@Example.org", MailProvider::other, "imap.example.org"},
        {"ana", MailProvider::other, ""},
        {"ana@", MailProvider::other, ""},
    };
    for (const auto &[email, provider, host] : cases) {
        const auto account = MailAccount::make(email, {});
        EXPECT_EQ(account.provider, provider) << email.toStdString();
        EXPECT_EQ(account.host, host);
        EXPECT_EQ(account.username, email.trimmed());
        EXPECT_EQ(account.port, 993);
    }
    const auto given = MailAccount::make("a@gmail.com", {"localhost", 1993, "ana"});
    EXPECT_EQ(given.host, "localhost");
    EXPECT_EQ(given.port, 1993);
    EXPECT_EQ(given.username, "ana");
}

TEST(MailURLs, LeadToTheMessage)
{
    auto account = MailAccount::make("ana+b@gmail.com", {});
    MailMessage message;
    message.from.address = "x@y.z";
    message.subject = "Olá & tchau";
    message.messageID = "a/b@c";
    EXPECT_EQ(MailURLs::open(account, message), QUrl("https://mail.google.com/"));
    message.gmailThreadID = 0x18c5f00ddeadbeef;
    EXPECT_EQ(MailURLs::open(account, message)->toEncoded(),
              "https://mail.google.com/mail/u/?authuser=ana%2Bb@gmail.com#all/18c5f00ddeadbeef");
    account.provider = MailProvider::other;
    EXPECT_EQ(MailURLs::open(account, message)->toEncoded(), "mid:a%2Fb@c");
    message.messageID.reset();
    EXPECT_EQ(MailURLs::open(account, message), std::nullopt);
    EXPECT_EQ(MailURLs::reply(message).toEncoded(),
              "mailto:x@y.z?subject=Re%3A%20Ol%C3%A1%20%26%20tchau");
    message.subject = "RE: oi";
    EXPECT_EQ(MailURLs::reply(message).toEncoded(), "mailto:x@y.z?subject=RE%3A%20oi");
}

TEST(MailMessage, IsReadFromItsBytes)
{
    const QByteArray raw = "From: Banco <seguranca@banco.example>\r\n"
                           "Message-ID: <1@banco>\r\n"
                           "Date: Mon, 2 Mar 2026 10:00:00 -0300\r\n\r\n"
                           "Seu código de acesso é 482913.\r\n";
    const Uuid account = makeUuid();
    const auto message = MailMessage::read({.accountID = account, .uid = 9}, raw, now);
    EXPECT_EQ(message.id(), uuidText(account) + "-9");
    EXPECT_EQ(message.subject, "(sem assunto)");
    EXPECT_EQ(message.code, "482913");
    EXPECT_EQ(message.signInKey(), "482913");
    EXPECT_EQ(message.messageID, "1@banco");
    EXPECT_EQ(message.date, Date{1'772'456'400s});
    EXPECT_EQ(MailMessage::read({.internalDate = now - 5s}, raw, now).date, now - 5s);
    EXPECT_EQ(MailMessage::read({}, "Oi: x\r\n\r\n", now).date, now);
}

} // namespace
} // namespace velmo
