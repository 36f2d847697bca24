#include "VelmoUI/Modules/Tools/ToolsPageModel.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoSystem/FileProcessing/ToolsSelection.h"
#include "VelmoSystem/FileProcessing/ToolsWork.h"
#include "VelmoUI/Composition/AppServices.h"
#include "VelmoUI/Notch/NotchViewModel.h"

#include "tests/support/FakeDesktop.h"
#include "tests/support/Printers.h"

#include <QProcess>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <thread>

namespace velmo {
namespace {

using testing::ElementsAre;

/// Real files in a folder, and real jobs.
class ToolsPageModelTest : public testing::Test {
protected:
    ToolsPageModelTest() { page.setWatched(true); }

    QUrl url(const char *name) const
    {
        return QUrl::fromLocalFile(folder.path(QString::fromUtf8(name)));
    }
    void choose(std::initializer_list<const char *> names, std::optional<QString> tool = {})
    {
        std::vector<QUrl> urls;
        for (const char *name : names) {
            if (!QFileInfo::exists(url(name).toLocalFile()))
                folder.write(QString::fromUtf8(name), name);
            urls.push_back(url(name));
        }
        services.tools->open(urls, std::move(tool));
    }
    void waitFor(const std::function<bool()> &isDone)
    {
        while (!isDone()) {
            desktop.scheduler.runPosted();
            std::this_thread::yield();
        }
    }
    void finish()
    {
        waitFor([&] { return services.jobs->runningCount() == 0; });
    }
    QString state(const char *tool)
    {
        const auto &rows = page.tools()->records();
        const auto row = std::ranges::find(rows, QString::fromLatin1(tool), &ToolRow::id);
        return row->isEnabled ? QString() : row->detail;
    }

    std::unique_ptr<ToolsPageModel> makePage()
    {
        return std::make_unique<ToolsPageModel>(*services.tools, *services.toolsWork,
                                                *services.activity, desktop.fileViewer,
                                                desktop.scheduler, panel);
    }
    void archive(const char *name, const QString &password)
    {
        folder.write(QStringLiteral("um.txt"), "segredo");
        QProcess archiver;
        QStringList arguments{QStringLiteral("a"), url(name).toLocalFile(),
                              folder.path(QStringLiteral("um.txt"))};
        if (!password.isEmpty())
            arguments.append(u"-p"_qs + password);
        archiver.start(QStringLiteral("7zz"), arguments);
        ASSERT_TRUE(archiver.waitForFinished());
        QFile::remove(folder.path(QStringLiteral("um.txt")));
    }

    TemporaryFolder folder;
    FakeDesktop desktop;
    AppServices services{desktop.paths(), {DataProtectionStatus::Disabled{}}, desktop.platform};
    NotchViewModel panel{1, NotchGeometry::metrics(FakeDesktop::screen(1)), services.panels()};
    std::unique_ptr<ToolsPageModel> owned = makePage();
    ToolsPageModel &page = *owned;
};

} // namespace

TEST(RenamePreview, TellsEveryNameBeforehand)
{
    const auto file = [](const char *name) { return QUrl::fromLocalFile(QString::fromUtf8(name)); };
    const std::vector<QUrl> urls{file("/f/a.png"), file("/f/b.png"), file("/g/b.png")};
    const auto exists = [&](const QUrl &url) {
        return std::ranges::count(urls, url) || url == file("/f/Foto 2.png");
    };
    const std::tuple<const char16_t *, const char16_t *, int, bool> cases[] = {
        {u"{nome}", u"a.png|b.png|b.png", 0, false},
        {u"Foto", u"Foto.png|Foto 3.png|Foto.png", 1, true},
        {u"Foto {n}", u"Foto 1.png|Foto 3.png|Foto 3.png", 1, true},
        {u"b", u"b.png|b 2.png|b.png", 1, true},
        {u"x:{n}", u"x:1.png|x:2.png|x:3.png", 3, false},
    };
    for (const auto &[pattern, names, problems, isPossible] : cases) {
        const auto preview =
            RenamePreview::make(urls, QString::fromUtf16(pattern), 1, Date{}, exists);
        QStringList given;
        for (const RenameRow &row : preview.rows)
            given.push_back(row.after);
        EXPECT_EQ(given.join(u'|'), names);
        EXPECT_EQ(preview.problemCount, problems) << qPrintable(given.front());
        EXPECT_EQ(preview.isPossible(), isPossible) << qPrintable(given.front());
    }
}

TEST_F(ToolsPageModelTest, SaysWhyAToolDoesNotApply)
{
    choose({"a.txt", "b.zip"});
    EXPECT_EQ(state("extract"), u"Só para compactados");
    choose({"a.zip", "b.zip"});
    EXPECT_EQ(state("extract"), QString());
    EXPECT_EQ(state("list"), u"Só um por vez");
    services.tools->open({QUrl::fromLocalFile(folder.path())}, QStringLiteral("organize"));
    EXPECT_EQ(page.tool(), QString());
    EXPECT_TRUE(page.isNoteError());
    EXPECT_EQ(services.jobs->runningCount(), 0);
    choose({"a.txt"});
    EXPECT_EQ(page.note(), QString()) << "it was about other files";
}

TEST_F(ToolsPageModelTest, SumsUpTheFiles)
{
    choose({"a.txt", "bb.txt"});
    waitFor([&] {
        return page.filesDetail() == u"11\u00a0bytes ao todo" ||
               page.filesDetail() == u"11 bytes ao todo";
    });
    EXPECT_EQ(page.filesTitle(), u"2 itens");
    page.remove(url("a.txt").toLocalFile());
    waitFor([&] { return page.files()->rowCount() == 1; });
    EXPECT_EQ(page.filesTitle(), u"bb.txt");
    EXPECT_EQ(page.filesDetail(), page.files()->records().front().detail);
}

TEST_F(ToolsPageModelTest, RenamesAndTakesItBack)
{
    choose({"b.txt", "a.txt"}, QStringLiteral("rename"));
    page.renameForm()->setPattern(QStringLiteral("{n}"));
    page.renameForm()->setStartText(QStringLiteral("7"));
    page.rename();
    EXPECT_TRUE(page.isRunning());
    finish();
    EXPECT_THAT(folder.names(), ElementsAre(u"7.txt", u"8.txt"));
    EXPECT_EQ(services.tools->urls(), (std::vector{url("7.txt"), url("8.txt")}));
    EXPECT_EQ(page.note(), u"2 itens renomeados");
    EXPECT_EQ(page.tool(), QString());

    folder.write(QStringLiteral("a.txt"), "outro");
    page.undo();
    finish();
    EXPECT_TRUE(page.isNoteError());
    EXPECT_THAT(folder.names(), ElementsAre(u"7.txt", u"8.txt", u"a.txt")) << "all or none";
    EXPECT_EQ(folder.read(QStringLiteral("a.txt")), "outro");

    QFile::remove(folder.path(QStringLiteral("a.txt")));
    page.undo();
    finish();
    EXPECT_EQ(folder.read(QStringLiteral("a.txt")), "a.txt");
    EXPECT_EQ(services.tools->urls(), (std::vector{url("b.txt"), url("a.txt")}));
    EXPECT_FALSE(page.canUndo());
}

TEST_F(ToolsPageModelTest, TakesBackWhatMovedBeforeAFailure)
{
    choose({"a.txt", "b.txt"});
    page.moveTo(QUrl::fromLocalFile(folder.path()));
    EXPECT_FALSE(page.isRunning());
    EXPECT_TRUE(page.note().startsWith(u"Os itens já estão em"));
    folder.write(QStringLiteral("alvo/x"), {});
    QFile::remove(folder.path(QStringLiteral("b.txt")));
    page.moveTo(url("alvo"));
    finish();
    EXPECT_TRUE(page.isNoteError());
    EXPECT_EQ(services.tools->urls(), (std::vector{url("alvo/a.txt"), url("b.txt")}));
    page.undo();
    finish();
    EXPECT_THAT(folder.names(), ElementsAre(u"a.txt", u"alvo"));
}

TEST_F(ToolsPageModelTest, OrganizesAndLeavesNoFolderBehind)
{
    choose({"a.txt", "b.png"}, QStringLiteral("organize"));
    finish();
    EXPECT_THAT(folder.names(), ElementsAre(u"PNG", u"TXT"));
    page.undo();
    finish();
    EXPECT_THAT(folder.names(), ElementsAre(u"a.txt", u"b.png"));
}

TEST_F(ToolsPageModelTest, DoesOneThingAtATime)
{
    choose({"a.txt"});
    page.open(QStringLiteral("duplicate"));
    page.open(QStringLiteral("duplicate"));
    finish();
    EXPECT_THAT(folder.names(), ElementsAre(u"a cópia.txt", u"a.txt"));
    page.reveal();
    EXPECT_EQ(desktop.fileViewer.revealed, std::vector{url("a cópia.txt")});
    EXPECT_EQ(services.activity->history().front().title, u"1 cópia feita");
}

TEST_F(ToolsPageModelTest, MakesListsAndExtractsArchives)
{
    choose({"um.txt", "Ação.txt"}, QStringLiteral("zip"));
    page.setZipName(QStringLiteral("a/b"));
    EXPECT_FALSE(page.canZip());
    page.setZipName(QStringLiteral("Tudo.zip"));
    page.zip();
    finish();
    ASSERT_EQ(page.note(), u"“Tudo.zip” criado");

    choose({"Tudo.zip"}, QStringLiteral("list"));
    finish();
    EXPECT_EQ(page.entriesDetail(), u"2 itens");
    page.searchEntries(QStringLiteral("acao"));
    EXPECT_EQ(page.entriesDetail(), u"1 de 2 itens");

    page.extract();
    finish();
    EXPECT_EQ(QDir(folder.path(QStringLiteral("Tudo"))).entryList(QDir::Files).size(), 2);
}

TEST_F(ToolsPageModelTest, AsksForAPasswordUntilItFits)
{
    archive("x.7z", QStringLiteral("senha"));
    choose({"x.7z"}, QStringLiteral("extract"));
    page.extract();
    finish();
    EXPECT_EQ(page.passwordQuestion(), u"Este arquivo está protegido por senha.");
    page.usePassword(QStringLiteral("errada"));
    EXPECT_EQ(page.passwordQuestion(), QString());
    finish();
    EXPECT_EQ(page.passwordQuestion(), u"Senha incorreta.");
    page.usePassword(QStringLiteral("senha"));
    finish();
    EXPECT_EQ(folder.read(QStringLiteral("um.txt")), "segredo");
    EXPECT_EQ(page.tool(), QString());
}

TEST_F(ToolsPageModelTest, GoesOnWithoutThePage)
{
    archive("a.7z", {});
    archive("b.7z", QStringLiteral("senha"));
    archive("c.7z", {});
    choose({"b.7z", "a.7z", "c.7z"}, QStringLiteral("extract"));
    page.extract();
    owned.reset();
    finish();
    EXPECT_EQ(folder.read(QStringLiteral("um.txt")), "segredo");
    EXPECT_EQ(folder.read(QStringLiteral("um 2.txt")), "segredo") << "none waits for the password";
    ASSERT_EQ(services.activity->live().size(), 1U);
    EXPECT_EQ(services.activity->live()[0].title, u"Senha de “b.7z”, em Ferramentas");

    choose({"a.txt"}); // whatever is chosen meanwhile
    const auto made = makePage();
    ToolsPageModel &again = *made;
    EXPECT_EQ(again.passwordTitle(), u"Senha de “b.7z”");
    again.usePassword(QStringLiteral("senha"));
    finish();
    EXPECT_EQ(folder.read(QStringLiteral("um 3.txt")), "segredo");
    EXPECT_TRUE(services.activity->live().empty());

    choose({"b.7z"}, QStringLiteral("extract"));
    again.extract();
    finish();
    services.activity->cancel(services.activity->live()[0].id);
    EXPECT_EQ(again.passwordQuestion(), QString()) << "it is left as it is";
}

TEST_F(ToolsPageModelTest, TakesBackForAWhileWithoutThePage)
{
    choose({"a.txt"}, QStringLiteral("rename"));
    page.renameForm()->setPattern(QStringLiteral("b"));
    page.rename();
    owned.reset();
    finish();
    makePage().reset(); // it has seen the end
    const auto made = makePage();
    ToolsPageModel &again = *made;
    EXPECT_EQ(again.note(), u"1 item renomeado");
    desktop.scheduler.advance(ToolsWork::undoTime - 0.1s);
    ASSERT_TRUE(again.canUndo());
    again.undo();
    finish();
    EXPECT_THAT(folder.names(), ElementsAre(u"a.txt"));
    again.renameForm()->setPattern(QStringLiteral("c"));
    again.rename();
    finish();
    desktop.scheduler.advance(ToolsWork::undoTime);
    EXPECT_FALSE(again.canUndo());
}

} // namespace velmo
