#include "VelmoCore/Files/PendingFiles.h"
#include "VelmoCore/Foundation/Json.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoSystem/FileProcessing/ArchiveProcessor.h"
#include "VelmoSystem/FileProcessing/FileOperations.h"
#include "VelmoSystem/FileProcessing/MovedFiles.h"
#include "VelmoSystem/FileProcessing/PrivateFolder.h"

#include "tests/VelmoSystem/SystemCalls.h"
#include "tests/support/ManualScheduler.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <map>
#include <poll.h>
#include <set>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmo {
namespace {

namespace fs = std::filesystem;

using Contents = std::multiset<std::string>;

/// A record as it lies on the disk.
struct Left {
    std::vector<PendingFile> files;
};
BOOST_DESCRIBE_STRUCT(Left, (), (files))

/// Two folders on two file systems, and everything in them.
class FileFaultsTest : public testing::Test {
protected:
    ~FileFaultsTest() override
    {
        clear(here);
        clear(there);
    }

    static void clear(const fs::path &root)
    {
        if (!fs::exists(root))
            return;
        for (const auto &entry : fs::recursive_directory_iterator(root)) {
            if (entry.is_directory() && !entry.is_symlink())
                fs::permissions(entry, fs::perms::owner_all);
        }
        fs::remove_all(root);
    }

    /// Begins anew with a tree of the user's in `here`.
    void arrange()
    {
        clear(here);
        clear(there);
        fs::create_directories(here / "pasta/funda");
        fs::create_directory(there);
        write(here / "pasta/a.txt", "um");
        write(here / "pasta/funda/b.txt", "dois");
        fs::create_symlink("a.txt", here / "pasta/link");
        fs::permissions(here / "pasta/funda", fs::perms::owner_read | fs::perms::owner_exec);
        expected = {"um", "dois"};
    }
    static void write(const fs::path &path, const std::string &content)
    {
        std::ofstream(path, std::ios::app) << content;
    }
    static Contents contents(const fs::path &root)
    {
        Contents found;
        for (const auto &entry : fs::recursive_directory_iterator(root)) {
            std::ifstream file(entry.path());
            if (entry.is_regular_file() && !entry.is_symlink() &&
                entry.path().parent_path().filename() != "Shelf")
                found.emplace(std::istreambuf_iterator<char>(file),
                              std::istreambuf_iterator<char>());
        }
        return found;
    }
    Contents everything() const
    {
        Contents found = contents(here);
        if (fs::exists(there))
            found.merge(contents(there));
        return found;
    }
    QUrl url(const fs::path &path) const
    {
        return QUrl::fromLocalFile(QString::fromStdString(path));
    }
    /// The error's text; empty where there is none.
    static std::string failure(const std::function<void()> &act)
    {
        try {
            act();
        } catch (const LocalizedError &error) {
            return error.what();
        }
        return {};
    }
    std::string moveOver()
    {
        return failure(
            [&] { FileTransfer::moveUnique(url(here / "pasta"), url(there / "pasta")); });
    }

    /// `act` once for each of its system calls, with `before` in front of that one.
    void interruptEach(const std::function<int()> &before, const std::function<std::string()> &act,
                       const std::function<void(const std::string &failure)> &check,
                       bool isLasting = false)
    {
        for (int at = 1;; ++at) {
            arrange();
            SystemCalls::interrupt(at, isLasting, before);
            const std::string text = act();
            const bool wasInterrupted = SystemCalls::stop();
            SCOPED_TRACE("call " + std::to_string(at) + ": " + text);
            check(text);
            if (HasFailure())
                return;
            if (!wasInterrupted) {
                EXPECT_EQ(text, "");
                EXPECT_GT(at, 5);
                return;
            }
        }
    }

    TemporaryFolder folder;
    const fs::path here = folder.path(QStringLiteral("aqui")).toStdString();
    const fs::path there = "/dev/shm/orvane-faults-" + std::to_string(::getpid());
    Contents expected;
};

/// Runs `act` in a process of its own, which is killed at its system call number `at`. Whether it
/// was.
bool isKilledAt(int at, const std::function<void()> &act)
{
    const pid_t child = ::fork();
    if (child == 0) {
        SystemCalls::interrupt(at, false, [] { return ::kill(::getpid(), SIGKILL); });
        act();
        ::_exit(0);
    }
    int status = 0;
    ::waitpid(child, &status, 0);
    return WIFSIGNALED(status);
}

bool says(const std::string &text, const std::string &part)
{
    return text.find(part) != std::string::npos;
}

} // namespace

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

TEST_F(FileFaultsTest, GiveNamesBackAfterAKill)
{
    const PendingFiles::Folder records(folder.path(QStringLiteral("Pending")));
    const std::string longest = std::string(251, 'x') + ".txt";
    const auto swap = [&] {
        const std::vector files{url(here / "2.txt"), url(here / "1.txt"), url(here / longest)};
        failure([&] {
            FileOperations::batchRename(files, QStringLiteral("{n}"), 1, Date{0s}, [](double) {});
        });
    };
    const auto changeCase = [&] { // where the old name takes the new one, as a second link does
        failure([&] { FileOperations::rename(url(here / "a.txt"), QStringLiteral("A.txt")); });
    };
    const auto takeBack = [&] {
        failure([&] {
            MovedFiles{.before = {url(here / "1.txt"), url(here / "2.txt")},
                       .now = {url(here / "2.txt"), url(here / "1.txt")},
                       .madeFolders = {}}
                .takeBack({});
        });
    };
    const auto names = [&] {
        std::map<std::string, std::string> found;
        for (const auto &entry : fs::directory_iterator(here)) {
            std::ifstream file(entry.path());
            found[entry.path().filename()] = {std::istreambuf_iterator<char>(file), {}};
        }
        return found;
    };
    const std::map<std::string, std::string> before{
        {"1.txt", "dois"}, {"2.txt", "um"}, {longest, "três"}, {"a.txt", "a"}, {"A.txt", "a"}};
    const std::function<void()> operations[] = {swap, changeCase, takeBack};
    const std::function<void()> nextRuns[] = {
        [] { PendingFiles::restore(); },
        [&] { failure([&] { FileOperations::rename(url(here / "livre"), QStringLiteral("x")); }); },
        [&] { // into a folder of another name
            const fs::path other = here.string() + "-outra";
            fs::rename(here, other);
            PendingFiles::restore(QString::fromStdString(other));
            fs::rename(other, here);
        },
    };
    for (const auto &operation : operations) {
        for (const auto &nextRun : nextRuns) {
            int at = 1;
            for (bool isKilled = true; isKilled; ++at) {
                clear(here);
                clear(there);
                fs::create_directory(here);
                for (const auto &[name, content] : before)
                    write(here / name, name == "a.txt" ? "" : content);
                fs::remove(here / "a.txt");
                fs::create_hard_link(here / "A.txt", here / "a.txt");
                isKilled = isKilledAt(at, operation);
                nextRun();
                SCOPED_TRACE(at);
                if (names() == before)
                    continue;
                // Only what had come to its end keeps the new names.
                const auto after = names();
                EXPECT_TRUE(after.at("1.txt") == "um" && after.at("2.txt") == "dois");
                EXPECT_EQ(after.size(), before.size());
                EXPECT_TRUE(std::ranges::none_of(
                    after, [](const auto &file) { return file.first.starts_with('.'); }));
                if (HasFailure())
                    return;
            }
            EXPECT_GT(at, 5);
        }
    }
}

TEST_F(FileFaultsTest, LeaveNothingHalfAfterAKill)
{
    const PendingFiles::Folder records(folder.path(QStringLiteral("Pending")));
    const auto hidden = [&] {
        std::vector<std::string> found;
        for (const fs::path &root : {here, there}) {
            for (const auto &entry : fs::recursive_directory_iterator(root)) {
                if (entry.path().filename().string().starts_with('.'))
                    found.push_back(entry.path());
            }
        }
        return found;
    };
    for (const bool isMove : {true, false}) {
        for (const char *name : {"pasta", "pasta/a.txt"}) {
            int at = 1;
            for (bool isKilled = true; isKilled; ++at) {
                SCOPED_TRACE(std::string(name) + " " + std::to_string(at));
                arrange();
                const QUrl from = url(here / name);
                const QUrl to = url(there / "chegou");
                isKilled = isKilledAt(at, [&] {
                    if (isMove)
                        FileTransfer::moveUnique(from, to);
                    else
                        FileTransfer::copyUnique(from, to);
                });
                PendingFiles::restore();
                EXPECT_EQ(hidden(), std::vector<std::string>());
                EXPECT_TRUE(isMove || contents(here) == expected);
                Contents all = contents(here);
                all.merge(contents(there));
                for (const std::string &content : expected)
                    EXPECT_TRUE(all.contains(content)) << content;
                if (fs::is_directory(there / "chegou")) {
                    EXPECT_EQ(contents(there / "chegou"), expected);
                }
                EXPECT_FALSE(PendingFiles::hasRecords());
                if (HasFailure())
                    return;
            }
            EXPECT_GT(at, 5);
        }
    }
    // What may be the only copy stays until its original is to be seen.
    arrange();
    write(there / ".orvane-x", "parte");
    const auto native = [](const fs::path &path) { return QByteArray::fromStdString(path); };
    AtomicFile::write(
        Json::encode(Left{
            {{PendingKind::copy, native(there / ".orvane-x"), native(here / "longe"), {}, 0}}}),
        folder.path(QStringLiteral("Pending/x.json")));
    EXPECT_EQ(PendingFiles::restore(), PendingFiles::Restored());
    EXPECT_TRUE(fs::exists(there / ".orvane-x"));
    write(here / "longe", "inteiro");
    EXPECT_EQ(PendingFiles::restore().removed, 1);
    EXPECT_FALSE(fs::exists(there / ".orvane-x") || PendingFiles::hasRecords());
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

TEST_F(FileFaultsTest, LeaveNothingOfAKilledRunAtTheNextStart)
{
    arrange();
    const fs::path archive = folder.path(QStringLiteral("pasta.zip")).toStdString();
    const fs::path temporary = folder.path(QStringLiteral("tmp")).toStdString();
    fs::create_directory(temporary);
    ASSERT_EQ(std::system(
                  ("bsdtar -caf " + archive.string() + " -C " + here.string() + " pasta").c_str()),
              0);
    qputenv("TMPDIR", temporary.c_str());
    ManualScheduler scheduler;
    JobProgress progress(scheduler, [](auto, const auto &) {});
    const std::function<QUrl()> acts[] = {
        [&] { return ArchiveProcessor::extract({url(archive)}, url(here), 1 << 20, progress); },
        [&] { return ArchiveProcessor::extract({url(archive)}, url(there), 1 << 20, progress); },
        [&] { return ArchiveProcessor::zip({url(here / "pasta")}, {}, url(there), progress); }};
    // What has its name is whole, and the originals stay: in the temporary folder is nobody's own.
    const auto check = [&](const std::vector<fs::path> &made) {
        EXPECT_TRUE(fs::exists(archive));
        EXPECT_EQ(contents(here / "pasta"), expected);
        for (const fs::path &tree : {made[0], made[1]}) {
            EXPECT_TRUE(!fs::exists(tree) || contents(tree) == expected) << tree;
        }
        EXPECT_TRUE(!fs::exists(made[2]) ||
                    std::system(("bsdtar -tf " + made[2].string() + " > /dev/null").c_str()) == 0);
    };
    for (const auto &act : acts) {
        for (int at = 1, status = -1; status != 0; ++at) {
            SCOPED_TRACE(at);
            ASSERT_LT(at, 1000);
            arrange();
            const pid_t child = ::fork();
            if (child == 0) {
                SystemCalls::interrupt(at, false, [] { return ::raise(SIGKILL); });
                ::_exit(failure(act).empty() ? 0 : 1);
            }
            ASSERT_EQ(::waitpid(child, &status, 0), child);
            const std::vector<fs::path> made = {here / "pasta 2", there / "pasta",
                                                there / "pasta.zip"};
            check(made);
            // The tool dies with its owner, a moment later.
            for (int attempt = 0; attempt < 2000 && !fs::is_empty(temporary); ++attempt) {
                PrivateFolder::removeLeftovers();
                ::poll(nullptr, 0, 1);
            }
            EXPECT_TRUE(fs::is_empty(temporary));
            check(made);
            if (HasFailure())
                return;
        }
    }
    const PrivateFolder living(PrivateFolder::Purpose::compression);
    const fs::path named = temporary / "Orvane-extract-notas";
    fs::create_directory(named);
    const fs::path link = temporary / "Orvane-extract-00000000-0000-0000-0000-000000000000";
    fs::create_symlink(here, link);
    PrivateFolder::removeLeftovers();
    for (const fs::path &path : {fs::path(living.path().toStdString()), named, link})
        EXPECT_TRUE(fs::exists(path)) << path;
    EXPECT_EQ(contents(here / "pasta"), expected);
    qunsetenv("TMPDIR");
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

} // namespace velmo
