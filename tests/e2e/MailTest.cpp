#include "tests/e2e/RoomTest.h"
#include "tests/support/MailServer.h"

#include <X11/keysym.h>

namespace velmo {

/// Nothing where the machine allows no mount of our own.
extern std::optional<OwnTrust> ownTrust;

/// Orvane beside a real mail server.
class MailTest : public RoomTest {
protected:
    void SetUp() override
    {
        if (!ownTrust)
            GTEST_SKIP() << "needs a mount namespace";
        RoomTest::SetUp();
        server.emplace(ownTrust->issue("localhost"), QStringList{"ana"});
    }
    void deliver(const QByteArray &subject, const QByteArray &text)
    {
        server->deliver("ana", "From: Bia <bia@example.org>\r\nSubject: " + subject +
                                   "\r\nContent-Type: text/plain; charset=utf-8\r\n\r\n" + text);
    }
    QJsonObject account() const { return status()["mail"][0].toObject(); }
    /// By the form of the empty page.
    void connectByKeyboard()
    {
        enter("E-mail");
        click("Endereço de e-mail");
        type("ana@localhost");
        screen.typeKey(XK_Return); // on to the password
        type("senha ana");
        for (const QString &text :
             {QString("localhost"), QString::number(server->port()), QString("ana")}) {
            screen.typeKey(XK_Tab);
            screen.typeKey(XK_Tab); // past the button that empties the field
            type(text);
        }
        screen.typeKey(XK_Return);
        ASSERT_TRUE(eventually([&] { return account()["state"] == "online"; }, 10s))
            << log().toStdString();
    }
    QString clipboard() const
    {
        QProcess process;
        process.setProcessEnvironment(environment);
        process.start("xclip", {"-o", "-selection", "clipboard"});
        process.waitForFinished();
        return QString::fromUtf8(process.readAllStandardOutput());
    }

    std::optional<MailServer> server;
};

TEST_F(MailTest, ConnectsReadsAndThrowsAwayByKeyboard)
{
    deliver("Uma", "Oi.");
    deliver("Duas", "Oi de novo.");
    ASSERT_NO_FATAL_FAILURE(connectByKeyboard());
    EXPECT_TRUE(eventually([&] { return account()["unread"] == 2; }));

    const auto isInTrash = [&](qsizetype count) {
        return eventually([&] { return server->files("ana", "Trash").size() == count; }, 10s);
    };
    place("Não lida: Bia, Duas");
    screen.typeKey(XK_Delete);
    EXPECT_TRUE(eventually([&] { return account()["unread"] == 1; }));
    place("No lixo · Desfazer");
    screen.typeKey(XK_z, {XK_Control_L});
    EXPECT_TRUE(eventually([&] { return account()["unread"] == 2; }));
    screen.typeKey(XK_Delete);
    screen.typeKey(XK_Escape); // nobody can undo it any more
    EXPECT_TRUE(shows("collapsed"));
    EXPECT_TRUE(isInTrash(1));
    EXPECT_EQ(account()["unread"], 1);
}

TEST_F(MailTest, GivesACodeToTheApplicationInFrontWithOnePress)
{
    ASSERT_NO_FATAL_FAILURE(connectByKeyboard());
    screen.typeKey(XK_Escape);
    EXPECT_TRUE(shows("collapsed"));
    const int height = frame("shape").height();
    deliver("Acesso", "Seu código de verificação é 482913.");
    ASSERT_TRUE(eventually([&] { return frame("shape").height() >= height + 100; }));
    click("Copiar código 482913");
    EXPECT_TRUE(eventually([&] { return clipboard() == "482913"; }));
    EXPECT_TRUE(eventually([&] { return frame("shape").height() < height + 100; }));
}

} // namespace velmo
