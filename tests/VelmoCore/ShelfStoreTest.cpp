#include "VelmoCore/Shelf/ShelfStore.h"

#include "VelmoCore/Shelf/ShelfArrivals.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <QDir>

#include <gtest/gtest.h>

#include <array>
#include <thread>

namespace velmo {
namespace {

class ShelfStoreTest : public testing::Test {
protected:
    ShelfStoreTest()
    {
        QDir().mkpath(folder.path(u"docs"_qs));
        shelf.trash = [this](const QUrl &file) { trashed.push_back(file); };
    }

    QUrl file(const char *path, const QByteArray &content = "conteúdo")
    {
        folder.write(QString::fromUtf8(path), content);
        return url(path);
    }
    QUrl url(const char *path) const
    {
        return QUrl::fromLocalFile(folder.path(QString::fromUtf8(path)));
    }
    bool exists(const char *path) const { return QFile::exists(url(path).toLocalFile()); }
    QStringList names() const
    {
        QStringList found;
        for (const ShelfItem &item : shelf.items())
            found.append(item.name);
        return found;
    }
    ShelfStore reopened()
    {
        shelf.flush();
        return ShelfStore(places, std::nullopt, scheduler);
    }
    ShelfItem plan(const QUrl &original, ShelfStorage storage) const
    {
        return ShelfArrivals::plan({original}, *shelf.mesaDirectory(), storage, scheduler.now())
            .front();
    }
    void waitFor(const std::function<bool()> &isDone)
    {
        while (!isDone()) {
            scheduler.runPosted();
            std::this_thread::yield();
        }
    }

    TemporaryFolder folder;
    ManualScheduler scheduler;
    std::vector<QUrl> trashed;
    const ShelfStore::Places places{folder.path(u"Shelf"_qs), folder.path(u"No Notch"_qs),
                                    folder.path(u"Downloads"_qs)};
    ShelfStore shelf{places, std::nullopt, scheduler};
};

} // namespace

TEST_F(ShelfStoreTest, MovesAFileInAndBackToItsFolder)
{
    const QUrl moved = shelf.moveIn(file("docs/a.txt"));
    EXPECT_EQ(moved, url("No Notch/a.txt"));
    EXPECT_EQ(shelf.moveIn(file("docs/a.txt", "outro")), url("No Notch/a 2.txt"));
    EXPECT_EQ(names(), (QStringList{u"a.txt"_qs, u"a.txt"_qs}));
    EXPECT_EQ(reopened().items(), shelf.items());

    file("docs/a.txt", "tomado");
    shelf.remove({shelf.items()[0].id});
    EXPECT_TRUE(exists("docs/a 2.txt"));
    QDir(folder.path(u"docs"_qs)).removeRecursively();
    shelf.remove({shelf.items()[0].id});
    EXPECT_TRUE(exists("Downloads/a.txt"));
    EXPECT_TRUE(shelf.items().empty());
    EXPECT_TRUE(trashed.empty());
}

TEST_F(ShelfStoreTest, KeepsTheRecordOfAFileThatCannotGoBack)
{
    const QUrl moved = shelf.moveIn(file("docs/a.txt"));
    QDir(folder.path(u"docs"_qs)).removeRecursively();
    file("Downloads", "no folder");
    shelf.remove({shelf.items()[0].id});
    EXPECT_EQ(shelf.lastReturnFailure(), 1);
    EXPECT_EQ(names(), QStringList(u"a.txt"_qs));
    EXPECT_EQ(shelf.resolve(shelf.items()[0]), moved);
    shelf.dismissIssues();
    EXPECT_EQ(shelf.lastReturnFailure(), std::nullopt);
}

TEST_F(ShelfStoreTest, KnowsAtTheNextStartWhatWasOnItsWay)
{
    ShelfItem arrived = plan(file("docs/a.txt"), ShelfStorage::moved);
    ShelfItem lost = plan(url("docs/a.txt"), ShelfStorage::copy); // by another job, as soon
    int recorded = 0;
    for (const ShelfItem &item : {arrived, lost})
        shelf.recordArrivals({item},
                             [&](const std::exception_ptr &failure) { recorded += !failure; });
    const QUrl place = url("No Notch/a.txt");
    std::get<ShelfItem::File>(lost.content.value).path = url("No Notch/a 2.txt").toLocalFile();
    waitFor([&] { return recorded == 2; });
    EXPECT_TRUE(shelf.items().empty());
    EXPECT_EQ(shelf.arrivingCount(), 2);
    QFile::rename(url("docs/a.txt").toLocalFile(), place.toLocalFile());
    {
        ShelfStore next(places, std::nullopt, scheduler);
        EXPECT_EQ(next.items(), (std::vector{lost, arrived}));
        next.forgetMissingFiles();
        EXPECT_EQ(next.items(), std::vector{arrived});
        EXPECT_EQ(next.resolve(arrived), place);
    } // which has saved what it forgot

    shelf.completeTransfers({{lost.id, std::nullopt}, {arrived.id, url("No Notch/a 4.txt")}});
    EXPECT_EQ(shelf.arrivingCount(), 0);
    EXPECT_EQ(shelf.items().size(), 1U);
    EXPECT_EQ(reopened().items(), shelf.items());
}

TEST_F(ShelfStoreTest, MovesNothingThatItCannotRecordAndTriesAgain)
{
    QDir().mkpath(folder.path(u"Shelf/shelf.json"_qs)); // no file can take its place
    EXPECT_THROW(shelf.moveIn(file("docs/a.txt")), FileError);
    EXPECT_TRUE(exists("docs/a.txt"));
    EXPECT_FALSE(exists("No Notch/a.txt"));
    EXPECT_TRUE(shelf.items().empty());
    EXPECT_EQ(shelf.arrivingCount(), 0);
    const auto triesAgain = [&] {
        EXPECT_TRUE(shelf.lastSaveError());
        QDir().rmdir(folder.path(u"Shelf/shelf.json"_qs));
        ASSERT_GT(scheduler.pendingCount(), 0U);
        scheduler.advance(ShelfStore::retryDelay);
        waitFor([&] { return !shelf.lastSaveError(); });
    };
    triesAgain();
    QFile::remove(folder.path(u"Shelf/shelf.json"_qs));
    QDir().mkpath(folder.path(u"Shelf/shelf.json"_qs));
    shelf.addText(u"nota"_qs);
    shelf.flush();
    triesAgain();
    EXPECT_EQ(ShelfStore(places, std::nullopt, scheduler).items(), shelf.items());
}

TEST_F(ShelfStoreTest, SendsACopyToTheTrashAndLeavesAReference)
{
    shelf.copyIn(file("docs/a.txt"));
    shelf.addReferences({url("docs/a.txt"), url("docs/x/../a.txt")});
    ASSERT_EQ(shelf.items().size(), 2U) << "one path is one reference";
    shelf.remove({shelf.items()[0].id, shelf.items()[1].id});
    EXPECT_EQ(trashed, std::vector{url("No Notch/a.txt")});
    EXPECT_TRUE(exists("docs/a.txt"));
}

TEST_F(ShelfStoreTest, NamesLinksAndTextsByWhatTheySay)
{
    shelf.addLink(QUrl(u"https://exemplo.org/a"_qs));
    shelf.addLink(QUrl(u"mailto:a@exemplo.org"_qs));
    shelf.addText(u"\ufeff\n \t\u2028primeira\nsegunda"_qs);
    shelf.addText(u"\n \n"_qs);
    shelf.addText(QString(100, u'x'));
    EXPECT_EQ(names(), (QStringList{QString(80, u'x'), u"\n \n"_qs, u"primeira"_qs,
                                    u"mailto:a@exemplo.org"_qs, u"exemplo.org"_qs}));
    shelf.setGroup(u" Ideias "_qs, {shelf.items()[2].id});
    EXPECT_EQ(shelf.items(u" IDEIAS"_qs, std::nullopt).size(), 1U);
    EXPECT_EQ(shelf.items(u"segunda"_qs, std::nullopt).size(), 0U);
    EXPECT_EQ(shelf.items({}, u"Ideias"_qs).size(), 1U);
    shelf.setGroup(u" "_qs, {shelf.items()[2].id});
    EXPECT_TRUE(shelf.groups().empty());
}

TEST_F(ShelfStoreTest, CleansWhatIsOldButNothingPinnedOrMoved)
{
    shelf.moveIn(file("docs/movido.txt"));
    shelf.addText(u"fixo"_qs);
    shelf.togglePin(shelf.items()[0].id);
    shelf.addText(u"velho"_qs);
    scheduler.advance(86'400s * 2);
    shelf.addText(u"novo"_qs);
    EXPECT_EQ(shelf.autoClean(0, scheduler.now()), 0);
    EXPECT_EQ(shelf.autoClean(2, scheduler.now()), 0);
    EXPECT_EQ(shelf.autoClean(1, scheduler.now()), 1);
    EXPECT_EQ(names(), (QStringList{u"novo"_qs, u"fixo"_qs, u"movido.txt"_qs}));
}

TEST_F(ShelfStoreTest, ForgetsItsOwnFilesThatAreGoneAndKeepsReferences)
{
    const QUrl moved = shelf.moveIn(file("docs/a.txt"));
    shelf.addReferences({file("docs/b.txt")});
    QFile::remove(moved.toLocalFile());
    QFile::remove(url("docs/b.txt").toLocalFile());
    shelf.lookForMissingFiles();
    waitFor([&] { return shelf.items().size() < 2; });
    EXPECT_EQ(names(), QStringList(u"b.txt"_qs));
    EXPECT_EQ(shelf.resolve(shelf.items()[0]), std::nullopt);
}

TEST_F(ShelfStoreTest, AdoptsWhatAToolMadeBesideItsFilesOnly)
{
    shelf.moveIn(file("docs/a.txt"));
    shelf.adoptOutputs({file("No Notch/a.zip"), file("docs/b.zip"), url("No Notch/a.txt"),
                        url("No Notch/gone.zip")});
    EXPECT_EQ(names(), (QStringList{u"a.zip"_qs, u"a.txt"_qs}));
    shelf.remove({shelf.items()[0].id});
    EXPECT_TRUE(exists("Downloads/a.zip"));
}

TEST_F(ShelfStoreTest, BringsTheFilesOfEarlierVersionsOver)
{
    {
        ShelfStore early({places.directory, std::nullopt, places.downloads}, std::nullopt,
                         scheduler);
        early.moveIn(file("docs/a.txt"));
        early.flush();
        file("Shelf/Copies/0F/sem registro.txt");
        file("Shelf/Copies/0F/.DS_Store");
    }
    ShelfStore now = reopened();
    EXPECT_EQ(now.migrateIntoNotchFolder(), 2);
    EXPECT_TRUE(exists("No Notch/a.txt"));
    EXPECT_TRUE(exists("No Notch/sem registro.txt"));
    EXPECT_FALSE(exists("Shelf/Copies/0F"));
    EXPECT_EQ(now.items().size(), 2U);
    EXPECT_EQ(now.migrateIntoNotchFolder(), 0);
}

} // namespace velmo
