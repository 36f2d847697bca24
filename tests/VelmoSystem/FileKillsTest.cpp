#include "VelmoCore/Files/PendingFiles.h"
#include "VelmoCore/Foundation/Json.h"
#include "VelmoSystem/FileProcessing/ArchiveProcessor.h"
#include "VelmoSystem/FileProcessing/FileOperations.h"
#include "VelmoSystem/FileProcessing/MovedFiles.h"
#include "VelmoSystem/FileProcessing/PrivateFolder.h"

#include "tests/VelmoSystem/FileFaultsFixture.h"
#include "tests/support/ManualScheduler.h"

#include <algorithm>
#include <csignal>
#include <map>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmo {
namespace {

class FileKillsTest : public FileFaultsFixture {};

/// A record as it lies on the disk.
struct Left {
    std::vector<PendingFile> files;
};
BOOST_DESCRIBE_STRUCT(Left, (), (files))

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

TEST_F(FileKillsTest, GiveNamesBackAfterAKill)
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

TEST_F(FileKillsTest, LeaveNothingHalfAfterAKill)
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

TEST_F(FileKillsTest, LeaveNothingOfAKilledRunAtTheNextStart)
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

} // namespace
} // namespace velmo
