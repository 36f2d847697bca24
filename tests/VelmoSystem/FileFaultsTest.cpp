#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoSystem/FileProcessing/FileOperations.h"
#include "VelmoSystem/FileProcessing/MovedFiles.h"

#include "tests/VelmoSystem/FileFaultsFixture.h"
#include "tests/support/ManualScheduler.h"

#include <sys/mount.h>

namespace velmo {
namespace {

class FileFaultsTest : public FileFaultsFixture {};

bool says(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

TEST_F(FileFaultsTest, MoveAcrossFileSystemsWhollyOrNotAtAll)
{
    for (const int code : {EIO, ENOSPC, EINTR}) {
        interruptEach([&] { return code; }, [&] { return moveOver(); },
                      [&](const std::string &text) {
                          EXPECT_EQ(everything(), expected);
                          EXPECT_EQ(contents(text.empty() ? here : there).size(), 0U);
                          EXPECT_TRUE(text.empty() || says(text, "está em “" + here.string()));
                          EXPECT_FALSE(says(text, ".orvane-"));
                      });
    }
}

TEST_F(FileFaultsTest, SayWhereTheOriginalIsWhenNothingWorksAnyMore)
{
    interruptEach([] { return EIO; }, [&] { return moveOver(); },
                  [&](const std::string &text) {
                      fs::path place = there / "pasta";
                      if (!text.empty()) {
                          const auto begin =
                              text.rfind("está em “") + std::string_view("está em “").size();
                          place = text.substr(begin, text.rfind("”.") - begin);
                      }
                      EXPECT_EQ(contents(place), expected) << text;
                  },
                  true);
}

TEST_F(FileFaultsTest, MoveNothingAwayFromUnderSomebodyElse)
{
    const std::function<void()> others[] = {
        [&] {
            if (fs::exists(here / "pasta/a.txt")) {
                write(here / "pasta/a.txt", " mais");
                expected = {"um mais", "dois"};
            }
        },
        [&] {
            if (fs::exists(here / "pasta")) {
                write(here / "pasta/novo.txt", "novo");
                expected.insert("novo");
            }
        },
        [&] {
            if (!fs::exists(there / "pasta")) {
                write(there / "pasta", "meu");
                expected.insert("meu");
            }
        },
        [&] { fs::remove_all(there); },
        [&] {
            if (fs::exists(here / "pasta"))
                fs::rename(here / "pasta", here / "outra");
        },
    };
    for (const auto &other : others) {
        interruptEach(
            [&] {
                other();
                return 0;
            },
            [&] { return moveOver(); },
            [&](const std::string &) { EXPECT_EQ(everything(), expected); });
    }
}

TEST_F(FileFaultsTest, RenameABatchWhollyOrNotAtAll)
{
    const auto act = [&] {
        return failure([&] {
            FileOperations::batchRename({url(here / "pasta/a.txt"), url(here / "pasta/funda")},
                                        QStringLiteral("{n}"), 1, Date{0s}, [](double) {});
        });
    };
    const auto isAsBefore = [&] {
        return fs::exists(here / "pasta/a.txt") && fs::exists(here / "pasta/funda/b.txt");
    };
    interruptEach([] { return EIO; }, act,
                  [&](const std::string &text) {
                      EXPECT_EQ(everything(), expected);
                      EXPECT_NE(isAsBefore(), text.empty());
                      EXPECT_FALSE(says(text, ".velmo-rename-"));
                  });
    interruptEach([] { return EIO; }, act,
                  [&](const std::string &text) {
                      EXPECT_EQ(everything(), expected);
                      EXPECT_TRUE(text.empty() || isAsBefore() ||
                                  says(text, "ficou em “" + here.string()));
                  },
                  true);
    interruptEach(
        [&] {
            if (!fs::exists(here / "pasta/a.txt")) {
                write(here / "pasta/a.txt", "meu");
                expected.insert("meu");
            }
            return 0;
        },
        act, [&](const std::string &) { EXPECT_EQ(everything(), expected); });
}

TEST_F(FileFaultsTest, KeepTheShelfAndItsFolderInStep)
{
    ManualScheduler scheduler;
    std::optional<ShelfStore> shelf;
    const auto open = [&] {
        shelf.emplace(ShelfStore::Places{url(here / "Shelf").toLocalFile(),
                                         url(there / "No Notch").toLocalFile(),
                                         url(here / "Downloads").toLocalFile()},
                      std::nullopt, scheduler);
    };
    // What they save on another thread is part of them.
    const auto moveIn = [&] {
        const std::string text = failure([&] { shelf->moveIn(url(here / "pasta/a.txt")); });
        shelf->flush();
        return text;
    };
    const auto remove = [&] {
        shelf->remove({shelf->items()[0].id});
        shelf->flush();
    };
    const auto check = [&](const std::string &) {
        EXPECT_EQ(everything(), expected);
        EXPECT_EQ(fs::exists(there / "No Notch/a.txt"), shelf->items().size() == 1);
        EXPECT_NE(fs::exists(there / "No Notch/a.txt"), fs::exists(here / "pasta/a.txt"));
        const std::size_t count = shelf->items().size();
        open(); // as the next run does
        shelf->forgetMissingFiles();
        EXPECT_EQ(shelf->items().size(), count);
        shelf.reset();
    };
    const auto fault = [] { return EIO; };
    interruptEach(
        fault,
        [&] {
            open();
            return moveIn();
        },
        check);
    for (int at = 1;; ++at) {
        SCOPED_TRACE(at);
        arrange();
        open();
        ASSERT_EQ(moveIn(), "");
        SystemCalls::interrupt(at, false, fault);
        remove();
        const bool wasInterrupted = SystemCalls::stop();
        EXPECT_EQ(shelf->lastReturnFailure().has_value(), shelf->items().size() == 1);
        check({});
        if (!wasInterrupted || HasFailure())
            break;
    }
}

TEST_F(FileFaultsTest, StayWholeOnAFullDiskAndWithoutPermission)
{
    arrange();
    const auto move = [&](const fs::path &to) {
        return failure([&] { FileTransfer::moveUnique(url(here / "pasta"), url(to)); });
    };
    EXPECT_TRUE(says(move(there / std::string(256, 'x')), "o nome é longo demais"));
    EXPECT_TRUE(says(move(there / "nada/pasta"), "“nada”: o item não existe"));
    EXPECT_EQ(contents(here), expected);
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root mounts a disk and becomes somebody else";
    write(here / "pasta/grande.bin", std::string(100'000, 'x'));
    expected.insert(std::string(100'000, 'x'));
    if (::mount("tmpfs", there.c_str(), "tmpfs", 0, "size=64k") != 0)
        GTEST_SKIP() << "no disk to fill";
    EXPECT_TRUE(says(move(there / "pasta"), "“grande.bin”: não há espaço livre no disco"));
    EXPECT_TRUE(fs::is_empty(there));
    const auto takeBack = [&] {
        MovedFiles{.before = {url(there / "volta.bin")},
                   .now = {url(here / "pasta/grande.bin")},
                   .madeFolders = {}}
            .takeBack({});
    };
    EXPECT_EQ(failure(takeBack), "Falha em “grande.bin”: não há espaço livre no disco.");
    EXPECT_EQ(contents(here), expected);
    ::umount(there.c_str());
    fs::permissions(folder.path().toStdString(), fs::perms(0755));
    const fs::path target = there.string() + ".txt";
    ASSERT_EQ(::seteuid(65'534), 0);
    const std::string text =
        failure([&] { FileTransfer::moveUnique(url(here / "pasta/a.txt"), url(target)); });
    ASSERT_EQ(::seteuid(0), 0);
    EXPECT_TRUE(says(text, "“a.txt”: sem permissão de acesso")) << text;
    EXPECT_FALSE(fs::exists(target)) << "a copy without a move";
    EXPECT_EQ(everything(), expected);
}

} // namespace
} // namespace velmo
