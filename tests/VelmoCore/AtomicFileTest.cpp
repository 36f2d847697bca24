#include "VelmoCore/Storage/AtomicFile.h"

#include "VelmoCore/Storage/AppPaths.h"

#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <csignal>
#include <poll.h>
#include <random>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace velmo {
namespace {

mode_t modeOf(const QString &path)
{
    struct stat status = {};
    EXPECT_EQ(::lstat(QFile::encodeName(path).constData(), &status), 0);
    return status.st_mode & 07777;
}

int codeOf(const std::function<void()> &body)
{
    try {
        body();
    } catch (const FileError &error) {
        EXPECT_FALSE(error.description().contains("erro")) << error.what();
        return error.code();
    }
    return 0;
}

TEST(AtomicFile, MakesPrivateFilesInPrivateFolders)
{
    const TemporaryFolder folder;
    const QString path = folder.path("a/b/ção.json");
    AtomicFile::write("um", path);
    AtomicFile::write("dois", path);
    EXPECT_EQ(AtomicFile::read(path), "dois");
    EXPECT_EQ(AtomicFile::read(path, 3), "doi");
    EXPECT_EQ(modeOf(path), 0600U);
    EXPECT_EQ(modeOf(folder.path("a")), 0700U);
    EXPECT_EQ(modeOf(folder.path("a/b")), 0700U);
    EXPECT_EQ(QDir(folder.path("a/b")).entryList(QDir::AllEntries | QDir::Hidden).size(), 3);
}

TEST(AtomicFile, WritesThroughLinks)
{
    const TemporaryFolder folder;
    folder.write("real/settings.json", "antigo");
    QFile::link("real/settings.json", folder.path("relative"));
    QFile::link(folder.path("relative"), folder.path("chain"));
    QFile::link(folder.path("real/later.json"), folder.path("dangling"));
    AtomicFile::write("novo", folder.path("chain"));
    AtomicFile::write("feito", folder.path("dangling"));
    EXPECT_EQ(folder.read("real/settings.json"), "novo");
    EXPECT_EQ(folder.read("real/later.json"), "feito");
    for (const QString name : {"relative", "chain", "dangling"})
        EXPECT_TRUE(QFileInfo(folder.path(name)).isSymLink()) << name.toStdString();
}

TEST(AtomicFile, SaysWhyItFailedAndKeepsTheEarlierFile)
{
    const TemporaryFolder folder;
    folder.write("notes.json", "antigo");
    folder.write("folder/inside", "x");
    QFile::link("loop", folder.path("folder/loop"));
    const std::pair<QString, int> cases[] = {
        {folder.path("notes.json/a.json"), ENOTDIR}, {folder.path("folder"), EISDIR},
        {folder.path("folder/loop"), ELOOP},         {folder.path(QString(300, 'n')), ENAMETOOLONG},
        {"/proc/self/notes.json", ENOENT},
    };
    for (const auto &[path, code] : cases)
        EXPECT_EQ(codeOf([&] { AtomicFile::write("x", path); }), code) << path.toStdString();
    EXPECT_EQ(codeOf([&] { AtomicFile::read(folder.path("absent")); }), ENOENT);
    EXPECT_EQ(codeOf([&] { AtomicFile::read(folder.path("folder")); }), EISDIR);
    EXPECT_EQ(folder.read("notes.json"), "antigo");
    EXPECT_EQ(folder.names(), QStringList({"folder", "notes.json"}));
}

TEST(AtomicFile, KeepsTheEarlierFileWhenTheDiskTakesNoMore)
{
    const TemporaryFolder folder;
    folder.write("notes.json", "antigo");
    rlimit before = {};
    ::getrlimit(RLIMIT_FSIZE, &before);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const rlimit small = {100'000, before.rlim_max};
    ::setrlimit(RLIMIT_FSIZE, &small);
    const int code =
        codeOf([&] { AtomicFile::write(QByteArray(1'000'000, 'x'), folder.path("notes.json")); });
    ::setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(code, EFBIG);
    EXPECT_EQ(folder.read("notes.json"), "antigo");
    EXPECT_EQ(folder.names(), QStringList("notes.json"));
}

TEST(AtomicFile, CreatesOnlyWhatIsNotThere)
{
    const TemporaryFolder folder;
    QFile::link("nowhere", folder.path("link"));
    EXPECT_TRUE(AtomicFile::create("um", folder.path("key")));
    for (const QString name : {"key", "link"})
        EXPECT_FALSE(AtomicFile::create("dois", folder.path(name)));
    EXPECT_EQ(folder.read("key"), "um");
    EXPECT_EQ(folder.names(), QStringList({"key", "link"}));
}

TEST(AtomicFile, QuarantinesUnderANameOfItsOwn)
{
    const TemporaryFolder folder;
    const Date now{1'773'480'413.9s};
    const std::pair<QString, QString> names[] = {
        {"data", "data.corrupt-1773480413"},
        {"a.b.json", "a.b.corrupt-1773480413.json"},
        {".hidden", ".hidden.corrupt-1773480413"},
        {"10% de %1.json", "10% de %1.corrupt-1773480413.json"},
    };
    for (const auto &[name, moved] : names) {
        folder.write(name, "primeiro");
        EXPECT_EQ(AtomicFile::quarantine(folder.path(name), now), folder.path(moved));
        folder.write(name, "segundo");
        EXPECT_EQ(AtomicFile::quarantine(folder.path(name), now), std::nullopt);
        EXPECT_EQ(folder.read(name), "segundo");
        EXPECT_EQ(folder.read(moved), "primeiro");
    }
    EXPECT_EQ(AtomicFile::quarantine(folder.path("absent"), now), std::nullopt);
}

/// Kills a process at a random moment of its saving, which it does again and again.
void killASaver(const QString &path, std::mt19937 &random)
{
    int pipe[2];
    ASSERT_EQ(::pipe(pipe), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        for (int version = 0;; version = (version + 1) % 26) {
            AtomicFile::write(QByteArray(400'000, static_cast<char>('a' + version)), path);
            if (::write(pipe[1], "x", 1) != 1)
                ::_exit(1);
        }
    }
    ::close(pipe[1]);
    char saved = 0;
    ASSERT_EQ(::read(pipe[0], &saved, 1), 1);
    const timespec moment = {0, static_cast<long>(random() % 3'000'000)};
    ::ppoll(nullptr, 0, &moment, nullptr);
    ::kill(child, SIGKILL);
    ::waitpid(child, nullptr, 0);
    ::close(pipe[0]);
}

TEST(AtomicFile, IsWholeAndAloneAfterItsWriterWasKilled)
{
    const TemporaryFolder folder;
    const QStringList others = {".notes.json.orvane-1234567", ".other.json.orvane-123456"};
    for (const QString &name : others)
        folder.write(name, "x");
    std::mt19937 random(7);
    qsizetype strays = 0;
    for (int round = 0; round < 300; ++round) {
        killASaver(folder.path("notes.json"), random);
        strays += folder.names().size() - 3;
        AtomicFile::removeStrays(folder.path("notes.json"));
        ASSERT_EQ(folder.names(), others + QStringList("notes.json"));
        const QByteArray data = folder.read("notes.json");
        ASSERT_EQ(data, QByteArray(400'000, data.isEmpty() ? '?' : data.front()));
    }
    EXPECT_GT(strays, 0) << "no kill ever hit a save";
}

TEST(AppPaths, FollowsTheBaseDirectories)
{
    const TemporaryFolder folder;
    qputenv("XDG_DATA_HOME", folder.path("data").toUtf8());
    qputenv("XDG_CACHE_HOME", "relative");
    qputenv("XDG_RUNTIME_DIR", folder.path().toUtf8());
    folder.write("data/Velmo/notes.json", "x");
    const AppPaths paths = AppPaths::standard("Orvane", "Velmo");
    EXPECT_EQ(paths.settingsFile(), folder.path("data/Orvane/settings.json"));
    EXPECT_EQ(paths.caches, QDir::homePath() + "/.cache/Orvane");
    EXPECT_EQ(paths.temporary, folder.path("Orvane"));
    EXPECT_EQ(folder.read("data/Orvane/notes.json"), "x");
    EXPECT_EQ(QFile::symLinkTarget(folder.path("data/Velmo")), folder.path("data/Orvane"));
    EXPECT_EQ(AppPaths::standard("Orvane", "Velmo"), paths);

    qputenv("XDG_RUNTIME_DIR", folder.path("data/Orvane/notes.json").toUtf8());
    EXPECT_EQ(AppPaths::standard("Orvane").temporary, QString("/tmp/Orvane-%1").arg(::geteuid()));
}

TEST(AppPaths, MigratesNothingOverSomething)
{
    const TemporaryFolder folder;
    folder.write("old/a", "a");
    folder.write("new/b", "b");
    AppPaths::migrate(folder.path("old"), folder.path("new"));
    AppPaths::migrate(folder.path("absent"), folder.path("other"));
    AppPaths::migrate(folder.path("old/a"), folder.path("file"));
    EXPECT_EQ(folder.names(), QStringList({"new", "old"}));
    AppPaths::migrate(folder.path("old"), folder.path("old/inside"));
    EXPECT_EQ(QFile::symLinkTarget(folder.path("old/inside")), folder.path("old"))
        << "what can't be moved is linked to";
}

TEST(AppPaths, ClaimsItsTemporaryDirectoryAndEmptiesIt)
{
    const TemporaryFolder folder;
    const AppPaths paths = {folder.path("data"), folder.path("cache"), folder.path("tmp")};
    for (const QString name : {"tmp/deep/file", "tmp/.hidden", "kept/file"})
        folder.write(name, "x");
    QFile::link(folder.path("kept"), folder.path("tmp/link"));
    ::chmod(QFile::encodeName(paths.temporary).constData(), 0755);
    paths.ensureExists();
    EXPECT_EQ(modeOf(paths.temporary), 0700U);
    paths.purgeTemporary();
    EXPECT_TRUE(QDir(paths.temporary).isEmpty());
    EXPECT_EQ(folder.read("kept/file"), "x");

    QDir().rmdir(paths.temporary);
    QFile::link(folder.path("kept"), paths.temporary);
    EXPECT_NE(codeOf([&] { paths.ensureExists(); }), 0);
    QFile::remove(paths.temporary);
    if (::geteuid() != 0)
        GTEST_SKIP() << "only root can give a folder to somebody else";
    QDir().mkdir(paths.temporary);
    ASSERT_EQ(::chown(QFile::encodeName(paths.temporary).constData(), 65534, 65534), 0);
    EXPECT_EQ(codeOf([&] { paths.ensureExists(); }), EPERM);
}

} // namespace
} // namespace velmo
