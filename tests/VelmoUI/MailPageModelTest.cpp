#include "VelmoUI/Modules/Mail/MailPageModel.h"

#include "VelmoCore/Activity/ActivityCenter.h"

#include "tests/VelmoUI/FakePanelPort.h"
#include "tests/VelmoUI/MailScripts.h"
#include "tests/support/FakeDesktop.h"
#include "tests/support/Printers.h"

#include <gtest/gtest.h>

#include <thread>

namespace velmo {
namespace {

class MailPageModelTest : public testing::Test {
protected:
    MailPageModelTest()
    {
        desktop.servers.scripts = MailScripts::newAccount();
        mail.start();
        page.accounts()->setAddress("ana@example.org");
        page.accounts()->connectAccount("x");
        EXPECT_TRUE(page.accounts()->isTesting());
        waitFor([this] { return page.hasMessages(); });
    }
    /// The key store answers on another thread.
    void waitFor(const std::function<bool()> &isDone)
    {
        while (!isDone()) {
            desktop.scheduler.runPosted();
            std::this_thread::yield();
        }
    }
    static QString column(QAbstractItemModel *model, const char *role)
    {
        QStringList all;
        for (int row = 0; row < model->rowCount(); ++row)
            all << model->index(row, 0).data(model->roleNames().key(role)).toString();
        return all.join(u' ');
    }
    QString idOf(int uid) const
    {
        return uuidText(mail.accounts().front().id) + u'-' + QString::number(uid);
    }

    FakeDesktop desktop;
    DataFiles files{std::nullopt};
    ActivityCenter activity{std::nullopt, files, desktop.scheduler, 7};
    FakePanelPort panel;
    MailService mail{std::nullopt,    files,           desktop.scheduler,
                     desktop.servers, desktop.network, desktop.workspace};
    SignIns signIns{mail, desktop.pasteboard, desktop.fileViewer, activity, desktop.scheduler};
    MailPageModel page{MailServices{mail, signIns, activity, desktop.fileViewer, desktop.scheduler},
                       panel};
};

TEST_F(MailPageModelTest, ShowsAMessageAndWhereItsLinksReallyLead)
{
    EXPECT_FALSE(page.accounts()->isTesting());
    EXPECT_EQ(page.accounts()->issue(), "");
    EXPECT_EQ(column(page.messages(), "id"), idOf(4) + u' ' + idOf(3));
    EXPECT_EQ(column(page.messages(), "spoken").count("Não lida: Bia"), 2);

    desktop.servers.scripts = {
        MailScripts::errand("UID FETCH 4 (UID BODY.PEEK[]<0.8388608>)", {MailScripts::fetched(4)})};
    page.select(idOf(4));
    EXPECT_TRUE(page.isLoading());
    waitFor([this] { return !page.isLoading(); });
    EXPECT_EQ(page.sender(), "Bia <bia@example.org>");
    EXPECT_TRUE(page.text().contains("Veja www.banco.example e bom.example"))
        << page.text().toStdString();
    EXPECT_EQ(column(page.links(), "title"), "mau.example bom.example");
    EXPECT_EQ(column(page.links(), "isFalse"), "true false");
    page.openLink("https://bom.example/y");
    EXPECT_EQ(desktop.fileViewer.opened, std::vector{QUrl("https://bom.example/y")});

    EXPECT_EQ(page.code(), "482913");
    page.copyCode();
    EXPECT_EQ(desktop.pasteboard.written.text, "482913");
    EXPECT_TRUE(desktop.pasteboard.written.isSecret);
    EXPECT_TRUE(mail.recentSignIns(desktop.scheduler.now()).empty()) << "used";
}

TEST_F(MailPageModelTest, LoadsOnlyWhereTheUserStops)
{
    page.select(idOf(4));
    page.select(idOf(3));
    page.select(idOf(4)); // whose load is under way
    page.select(idOf(3));
    desktop.servers.scripts = {
        MailScripts::errand("UID FETCH 4 (UID BODY.PEEK[]<0.8388608>)", {MailScripts::fetched(4)}),
        MailScripts::errand("UID FETCH 3 (UID BODY.PEEK[]<0.8388608>)", {MailScripts::fetched(3)})};
    waitFor([this] { return !page.isLoading(); });
    EXPECT_TRUE(page.text().contains("482913"));
    EXPECT_TRUE(desktop.servers.scripts.empty());
}

TEST_F(MailPageModelTest, MovesAMessageAwayOnceItCannotComeBack)
{
    page.select(idOf(4));
    waitFor([this] { return !page.isLoading(); });
    page.archive();
    waitFor([this] { return !page.isLoading(); });
    EXPECT_EQ(column(page.messages(), "id"), idOf(3));
    EXPECT_EQ(page.undoTitle(), "Arquivada · Desfazer");
    page.undo();
    waitFor([this] { return !page.isLoading(); });
    EXPECT_EQ(column(page.messages(), "id"), idOf(4) + u' ' + idOf(3));
    desktop.scheduler.advance(10s);
    page.trash();
    waitFor([this] { return !page.isLoading(); });
    desktop.servers.scripts = {MailScripts::errand("UID MOVE 4 \"Lixo\"")};
    desktop.scheduler.advance(4.9s);
    EXPECT_EQ(page.undoTitle(), "No lixo · Desfazer");
    desktop.scheduler.advance(0.1s);
    EXPECT_EQ(page.undoTitle(), "");
    waitFor([this] { return desktop.servers.scripts.empty(); });

    QStringList errors;
    mail.onError = [&](const QString &text) { errors << text; };
    page.select(idOf(3));
    waitFor([this] { return !page.isLoading(); });
    page.trash(); // no server answers
    panel.isClosed = true;
    Q_EMIT panel.openChanged();
    waitFor([&] { return !errors.isEmpty(); });
    EXPECT_EQ(errors, QStringList{"O servidor fechou a conexão."});
    EXPECT_EQ(column(page.messages(), "id"), idOf(3)) << "back again";
}

TEST_F(MailPageModelTest, TouchesNothingInAnInboxThatWasNumberedAfresh)
{
    page.select(idOf(4));
    waitFor([this] { return !page.isLoading(); });
    QStringList errors;
    mail.onError = [&](const QString &text) { errors << text; };
    page.trash();
    waitFor([this] { return !page.isLoading(); });
    ServerScript other = MailScripts::connected();
    other.answers("SELECT \"INBOX\"", {"* OK [UIDVALIDITY 2]"}); // and no UID MOVE
    desktop.servers.scripts = {other};
    desktop.scheduler.advance(5s);
    waitFor([&] { return !errors.isEmpty(); });
    EXPECT_TRUE(errors.front().startsWith("O servidor renumerou a caixa de entrada"));
    EXPECT_EQ(column(page.messages(), "id"), idOf(4) + u' ' + idOf(3)) << "back again";
}

TEST_F(MailPageModelTest, SaysWhatIsWrongWithAnAddress)
{
    auto &accounts = *page.accounts();
    accounts.setAddress("ana");
    accounts.connectAccount("x");
    EXPECT_TRUE(accounts.issue().startsWith("Digite o endereço"));
    accounts.setAddress("bia@exemplo.com.br");
    EXPECT_TRUE(accounts.needsServer());
    EXPECT_EQ(accounts.guessedHost(), "imap.exemplo.com.br");
    accounts.connectAccount("");
    EXPECT_EQ(accounts.issue(), "Digite a senha.");
    accounts.connectAccount("x", "", "70000");
    EXPECT_EQ(accounts.issue(), "A porta vai de 1 a 65535.");
    accounts.connectAccount("x");
    waitFor([&] { return !accounts.isTesting(); });
    EXPECT_EQ(accounts.issue(), "O servidor fechou a conexão.");
    EXPECT_EQ(mail.accounts().size(), 1);
    accounts.setAddress("bia@gmail.com");
    EXPECT_FALSE(accounts.needsServer());
    EXPECT_EQ(accounts.issue(), "");
}

} // namespace
} // namespace velmo
