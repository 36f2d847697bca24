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
        EXPECT_EQ(make().load(), Words{"um"});

        folder.write("a/words.json", "{");
        EXPECT_EQ(file.load(), std::nullopt);
        EXPECT_TRUE(file.loadIssue());
        file.dismissIssues();
        EXPECT_EQ(file.loadIssue(), std::nullopt);
        EXPECT_EQ(changes, 3);
    }
}

} // namespace velmo
