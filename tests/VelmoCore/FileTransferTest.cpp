#include "VelmoCore/Files/FileTransfer.h"

#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <QDir>

#include <gtest/gtest.h>

#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <sys/xattr.h>

namespace velmo {
namespace {

namespace fs = std::filesystem;

/// Under "/dev/shm" for a second file system.
class FileTransferTest : public testing::TestWithParam<bool> {
protected:
    FileTransferTest()
    {
        fs::create_directories(other);
        fs::create_directory(source / "pasta");
        std::ofstream(source / "pasta/a.txt") << std::string(100'000, 'x') << "fim";
        std::ofstream(source / "pasta/\xff\xfe") << "no text";
        fs::create_symlink("a.txt", source / "pasta/link");
        ::chmod((source / "pasta/a.txt").c_str(), 0640);
        const timespec times[] = {{1, 0}, {1'600'000'000, 123'456'789}};
        ::utimensat(AT_FDCWD, (source / "pasta/a.txt").c_str(), times, 0);
        ::utimensat(AT_FDCWD, (source / "pasta").c_str(), times, 0);
    }
    ~FileTransferTest() override
    {
        fs::remove_all(other);
        fs::remove_all(source / "pasta");
    }

    static QString text(const fs::path &path) { return QString::fromStdString(path.string()); }
    void expectWhole(const fs::path &copy)
    {
        std::ifstream file(copy / "a.txt");
        const std::string content{std::istreambuf_iterator<char>(file), {}};
        EXPECT_EQ(content, std::string(100'000, 'x') + "fim");
        EXPECT_TRUE(fs::exists(copy / "\xff\xfe"));
        EXPECT_EQ(fs::read_symlink(copy / "link"), "a.txt");
        struct stat entry = {};
        ASSERT_EQ(::stat((copy / "a.txt").c_str(), &entry), 0);
        EXPECT_EQ(entry.st_mode & 0777, 0640U);
        EXPECT_EQ(entry.st_mtim.tv_nsec, 123'456'789);
        ASSERT_EQ(::stat(copy.c_str(), &entry), 0);
        EXPECT_EQ(entry.st_mtim.tv_sec, 1'600'000'000);
    }
    static std::size_t count(const fs::path &path)
    {
        return std::size_t(std::distance(fs::directory_iterator(path), {}));
    }
    int code(const std::function<void()> &transfer)
    {
        try {
            transfer();
        } catch (const FileError &error) {
            return error.code();
        }
        return 0;
    }

    TemporaryFolder folder;
    const fs::path source = folder.path(".").toStdString();
    const fs::path other = GetParam() ? "/dev/shm/orvane-test-" + std::to_string(::getpid())
                                      : (source / "outra").string();
};

INSTANTIATE_TEST_SUITE_P(On, FileTransferTest, testing::Bool(), [](const auto &test) {
    return test.param ? "AnotherFileSystem" : "TheSameFileSystem";
});

} // namespace

TEST_P(FileTransferTest, MovesAFolderWhole)
{
    FileTransfer::move(text(source / "pasta/"), text(other / "chegou"));
    expectWhole(other / "chegou");
    EXPECT_FALSE(fs::exists(source / "pasta"));
    EXPECT_EQ(count(other), 1U);
}

TEST_P(FileTransferTest, CopiesAndLeavesTheOriginal)
{
    const char value[] = "valor";
    const bool hasAttributes =
        ::setxattr((source / "pasta/a.txt").c_str(), "user.orvane", value, 5, 0) == 0;
    FileTransfer::copy(text(source / "pasta"), text(other / "chegou"));
    expectWhole(other / "chegou");
    expectWhole(source / "pasta");
    char found[8] = {};
    if (hasAttributes && !GetParam()) {
        EXPECT_EQ(::getxattr((other / "chegou/a.txt").c_str(), "user.orvane", found, 8), 5);
    }
}

TEST_P(FileTransferTest, NeverReplacesWhatStandsAtTheTarget)
{
    std::ofstream(other / "a.txt") << "meu";
    fs::create_symlink("nowhere", other / "b.txt");
    for (const char *target : {"a.txt", "b.txt"}) {
        const auto from = text(source / "pasta/a.txt");
        const auto to = text(other / target);
        EXPECT_EQ(code([&] { FileTransfer::move(from, to); }), EEXIST);
        EXPECT_EQ(code([&] { FileTransfer::copy(from, to); }), EEXIST);
    }
    EXPECT_EQ(fs::file_size(other / "a.txt"), 3U);
    EXPECT_EQ(FileTransfer::moveUnique(QUrl::fromLocalFile(text(source / "pasta/a.txt")),
                                       QUrl::fromLocalFile(text(other / "a.txt"))),
              QUrl::fromLocalFile(text(other / "a 2.txt")));
    EXPECT_EQ(fs::file_size(other / "a 2.txt"), 100'003U);
}

TEST_P(FileTransferTest, TellsHowFarACopyHasCome)
{
    std::vector<double> shares{0};
    const auto note = [&](double share) {
        EXPECT_GE(share, shares.back());
        shares.push_back(share);
    };
    const QUrl from = QUrl::fromLocalFile(text(source / "pasta"));
    const QUrl to = QUrl::fromLocalFile(text(other / "pasta"));
    const QUrl copy = FileTransfer::copyUnique(from, to, {}, note);
    EXPECT_EQ(shares.back(), 1);

    shares = {0};
    EXPECT_EQ(FileTransfer::renameUnique(from, to).has_value(), !GetParam());
    EXPECT_EQ(fs::exists(source / "pasta"), GetParam()) << "only what takes no time";
    if (GetParam()) {
        FileTransfer::moveUnique(from, to, {}, note);
        EXPECT_EQ(shares.back(), 1);
    }
    expectWhole(other / "pasta 2");
}

TEST_P(FileTransferTest, LeavesNothingBehindWhenItStops)
{
    fs::create_directory(source / "especial");
    ::mkfifo((source / "especial/canal").c_str(), 0600);
    EXPECT_EQ(code([&] { FileTransfer::copy(text(source / "especial"), text(other / "x")); }),
              EOPNOTSUPP);
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(FileTransfer::move(text(source / "pasta"), text(other / "x"), stop.get_token()),
                 Cancelled);
    EXPECT_EQ(code([&] { FileTransfer::move(text(source / "nada"), text(other / "x")); }), ENOENT);
    EXPECT_EQ(count(other), 0U);
    expectWhole(source / "pasta");
}

} // namespace velmo
