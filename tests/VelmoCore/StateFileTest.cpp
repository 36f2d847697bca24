#include "VelmoCore/Storage/StateFile.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace velmo {

using Words = std::vector<QString>;

TEST(StateFile, TellsOfAFailedSaveUntilOneSucceedsHoweverItSaves)
{
    for (const auto save : {&StateSaving::saveNow, &StateSaving::flush}) {
        const TemporaryFolder folder;
        ManualScheduler scheduler;
        int changes = 0;
        const auto make = [&] {
            return StateFile<Words>(
                folder.path("a/words.json"), {}, scheduler, {"Palavras", "palavras"},
                [] { return Words{"um"}; }, [&] { ++changes; });
        };
        StateFile<Words> file = make();
        folder.write("a", "no folder");
        for (int twice = 0; twice < 2; ++twice)
            (file.*save)();
        EXPECT_EQ(changes, 1);
        EXPECT_TRUE(file.lastSaveError().value().startsWith("Palavras: "));
        QFile::remove(folder.path("a"));
        (file.*save)();
        EXPECT_EQ(file.lastSaveError(), std::nullopt);
        EXPECT_EQ(changes, 2);
        Words kept;
        make().load([&](const Words &words) { kept = words; });
        EXPECT_EQ(kept, Words{"um"});

        folder.write("a/words.json", "{");
        file.load([](const Words &) { ADD_FAILURE(); });
        EXPECT_TRUE(file.loadIssue());
        file.dismissIssues();
        EXPECT_EQ(file.loadIssue(), std::nullopt);
        EXPECT_EQ(changes, 3);
    }
}

TEST(StateFile, IsReadWhenItsKeyComesAndKeepsWhatCameBefore)
{
    const TemporaryFolder folder;
    ManualScheduler scheduler;
    const DataCipher cipher(QByteArray(32, 'k'));
    const auto seal = [&](const Words &words) { return cipher.seal(Json::encode(words)); };
    folder.write("words.json", seal({"um"}));
    auto files = DataFiles::awaitingKey();
    Words words{"dois"};
    StateFile<Words> file(folder.path("words.json"), files, scheduler, {"Palavras", "palavras"},
                          [&] { return words; });
    file.load([&](const Words &kept) { words.insert(words.end(), kept.begin(), kept.end()); });
    const auto saved = [&] { return Json::decode<Words>(cipher.open(folder.read("words.json"))); };

    EXPECT_FALSE(files.holdsUnsaved());
    file.saveAfter(1s);
    EXPECT_TRUE(files.holdsUnsaved());
    scheduler.advance(1s);
    EXPECT_TRUE(files.holdsUnsaved());
    file.flush();
    EXPECT_TRUE(files.isLoading());
    EXPECT_EQ(saved(), Words{"um"});
    file.saveNow();
    EXPECT_EQ(files.issues().size(), 1) << "it isn't on disk";

    files.setKey(std::nullopt);
    file.flush();
    EXPECT_FALSE(files.isLoading());
    EXPECT_FALSE(file.isOpen());
    EXPECT_EQ(files.issues(), QStringList(LoadIssue::locked("Palavras")));
    EXPECT_EQ(saved(), Words{"um"});

    files.setKey(cipher);
    file.flush();
    EXPECT_TRUE(file.isOpen());
    EXPECT_EQ(files.issues(), QStringList());
    EXPECT_EQ(saved(), (Words{"dois", "um"}));
}

TEST(StateFile, IsSealedByAKeyThatComesAfterTheFirstSave)
{
    const TemporaryFolder folder;
    ManualScheduler scheduler;
    DataFiles files;
    StateFile<Words> file(folder.path("words.json"), files, scheduler, {"Palavras", "palavras"},
                          [] { return Words{"um"}; });
    file.load([](const Words &) { ADD_FAILURE(); });
    file.saveNow();
    EXPECT_FALSE(DataCipher::isSealedFile(folder.path("words.json")));
    files.setKey(DataCipher(QByteArray(32, 'k')));
    file.flush();
    EXPECT_TRUE(DataCipher::isSealedFile(folder.path("words.json")));
}

TEST(StateFile, TellsEveryoneWhoWaitsWhatTheirSaveCameTo)
{
    const TemporaryFolder folder;
    ManualScheduler scheduler;
    StateFile<Words> file(folder.path("a/words.json"), {}, scheduler, {"Palavras", "palavras"},
                          [] { return Words{"um"}; });
    std::vector<bool> failed;
    const auto save = [&] {
        file.save([&](const std::exception_ptr &failure) { failed.push_back(bool(failure)); });
    };
    folder.write("a", "no folder");
    for (int thrice = 0; thrice < 3; ++thrice)
        save();
    EXPECT_TRUE(failed.empty()) << "not before it is known";
    file.finishSaving();
    EXPECT_EQ(failed, std::vector<bool>(3, true));
    QFile::remove(folder.path("a"));
    save();
    file.finishSaving();
    EXPECT_FALSE(failed.back());
    EXPECT_EQ(failed.size(), 4U);
}

} // namespace velmo
