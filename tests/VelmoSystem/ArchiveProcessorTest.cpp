#include "VelmoSystem/FileProcessing/ArchiveProcessor.h"

#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoSystem/Storage/StorageInspector.h"

#include "tests/support/ManualScheduler.h"
#include "tests/support/Printers.h"
#include "tests/support/TemporaryFolder.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QProcess>
#include <QRandomGenerator>

#include <gtest/gtest.h>

#include <poll.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

namespace velmo {
namespace {

using Error = ArchiveError;
using Kind = ArchiveEngine::Kind;

/// Hostile archives, made once, and what lies outside them.
struct World {
    World()
    {
        outside.write("secret", "secret");
        ::chmod(qPrintable(outside.path("secret")), 0600);
        EXPECT_EQ(
            QProcess::execute("/usr/bin/python3", {MAKE_ARCHIVES, archives.path(), outside.path()}),
            0);
    }
    TemporaryFolder archives;
    TemporaryFolder outside;
};

const World &world()
{
    static const World world;
    return world;
}

QUrl url(const QString &path)
{
    return QUrl::fromLocalFile(path);
}

/// Everything beneath a folder, with what files hold, sorted.
QStringList tree(const QString &folder)
{
    QStringList result;
    QDirIterator entry(folder,
                       QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot,
                       QDirIterator::Subdirectories);
    while (entry.hasNext()) {
        const QString path = entry.next();
        const QFileInfo file = entry.fileInfo();
        QFile content(path);
        QString line = QDir(folder).relativeFilePath(path);
        if (file.isSymLink())
            line += " ->";
        else if (file.isFile() && content.open(QIODevice::ReadOnly))
            line += "=" + content.read(20);
        result.append(line);
    }
    result.sort();
    return result;
}

class ArchiveProcessor_ : public testing::TestWithParam<Kind> {
protected:
    void SetUp() override
    {
        world();
        qputenv("TMPDIR", temporary.path().toLocal8Bit());
    }
    void TearDown() override
    {
        EXPECT_EQ(temporary.names(), QStringList());
        EXPECT_EQ(tree(world().outside.path()), QStringList("secret=secret"));
        struct stat status = {};
        ::stat(qPrintable(world().outside.path("secret")), &status);
        EXPECT_EQ(status.st_nlink, 1U);
        EXPECT_EQ(status.st_mode & 07777, 0600U);
        qunsetenv("TMPDIR");
    }

    ArchiveProcessor::Engines engines() const { return {{*ArchiveEngine::find(GetParam())}}; }

    QString extract(const QString &archive, qint64 limit = ArchiveProcessor::defaultSizeLimit,
                    const std::optional<QString> &password = {})
    {
        return ArchiveProcessor::extract({url(archive), password, engines()}, url(target.path()),
                                         limit, progress)
            .toLocalFile();
    }
    /// Of the archive with that name.
    std::optional<Error::Value> refusal(const QString &name, qint64 limit = 1 << 25,
                                        const std::optional<QString> &password = {})
    {
        const QStringList before = target.names();
        try {
            extract(QFileInfo(name).isAbsolute() ? name : world().archives.path(name), limit,
                    password);
        } catch (const Error &error) {
            EXPECT_EQ(target.names(), before) << qPrintable(name);
            return error.value();
        }
        return std::nullopt;
    }
    void run(const char *tool, const QStringList &arguments)
    {
        QProcess process;
        process.setWorkingDirectory(files.path());
        process.start(tool, arguments);
        ASSERT_TRUE(process.waitForFinished(-1)) << tool;
        ASSERT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
    }

    TemporaryFolder temporary;
    TemporaryFolder target;
    TemporaryFolder files;
    ManualScheduler scheduler;
    std::vector<std::optional<double>> reported;
    JobProgress progress{scheduler,
                         [this](auto share, const auto &) { reported.push_back(share); }};
};

TEST_P(ArchiveProcessor_, GivesWhatAnArchiveHolds)
{
    const QString archive = world().archives.path("fotos.tar.gz");
    std::vector<QString> paths;
    for (const ArchiveEntry &entry : ArchiveProcessor::list({url(archive), {}, engines()}))
        paths.push_back(entry.path);
    EXPECT_EQ(paths, (std::vector<QString>{"ção", "b"}));
    EXPECT_EQ(extract(archive), target.path("fotos"));
    EXPECT_EQ(extract(archive), target.path("fotos 2"));
    EXPECT_EQ(extract(world().archives.path("folder.zip")), target.path("pasta"));
    EXPECT_EQ(extract(world().archives.path("onlylink.tar")), target.path("onlylink"));
    EXPECT_EQ(extract(world().archives.path("fine.zip")), target.path("a"));
    EXPECT_EQ(tree(target.path()),
              QStringList({"a", "a/..b=x", "fotos", "fotos 2", "fotos 2/b=2", "fotos 2/ção=1",
                           "fotos/b=2", "fotos/ção=1", "onlylink", "pasta", "pasta/x=x"}));
    EXPECT_EQ(reported.back(), 1.0);
}

TEST_P(ArchiveProcessor_, KeepsLinksWithinTheArchiveOnly)
{
    for (const char *name : {"links.tar", "links.zip"}) {
        const QString folder = extract(world().archives.path(name));
        EXPECT_EQ(tree(folder), QStringList({"a=a", "d", "d/b=b", "d/in ->", "d/up ->", "none ->"}))
            << name;
        EXPECT_EQ(QFileInfo(folder + "/d/up").canonicalFilePath(), folder + "/a");
    }
    const QString folder = extract(world().archives.path("hardin.tar"));
    EXPECT_EQ(tree(folder), QStringList({"a=a", "h=a"}));
    EXPECT_FALSE(QFile::permissions(folder + "/a") & QFile::ExeUser);
}

TEST_P(ArchiveProcessor_, RefusesWhatLeavesTheFolder)
{
    const QString outside = world().outside.path();
    const auto unsafe = [](const QString &path) { return Error::Value(Error::UnsafeEntry{path}); };
    const std::pair<const char *, QString> cases[] = {{"above.tar", "../evil"},
                                                      {"above.zip", "../evil"},
                                                      {"root.tar", outside + "/evil"},
                                                      {"root.zip", outside + "/evil"},
                                                      {"through.tar", "l/evil"},
                                                      {"through.zip", "l/evil"},
                                                      {"hard.tar", "h"},
                                                      {"device.tar", "null"},
                                                      {"pipe.tar", "fifo"}};
    const auto both = [](const QString &name) {
        return QStringList({name, "large" + name.section('.', 0, 0) + ".tar.gz"});
    };
    for (const auto &[name, path] : cases) {
        for (const QString &archive : both(name))
            EXPECT_EQ(refusal(archive), unsafe(path)) << qPrintable(archive);
    }
    for (const QString &archive : both("hardup.tar"))
        EXPECT_TRUE(std::holds_alternative<Error::UnsafeEntry>(refusal(archive).value()));
    for (const QString &archive : both("hardby.tar"))
        EXPECT_TRUE(refusal(archive).has_value());
}

TEST_P(ArchiveProcessor_, StopsAtTheSizeThatAnArchiveHasOrHides)
{
    const qint64 limit = 1 << 24;
    const Error::Value tooLarge = Error::TooLarge{limit};
    EXPECT_EQ(refusal("bomb.zip", limit), tooLarge);
    EXPECT_EQ(refusal("bomb.tar", limit), tooLarge);
    // Either the tool notices the lie, or the guard.
    EXPECT_TRUE(refusal("liar.zip", limit).has_value());
    if (GetParam() == Kind::sevenZip) {
        EXPECT_EQ(refusal("liar.gz", limit), tooLarge);
    }
    EXPECT_EQ(refusal("bomb.zip", 40 << 20), std::nullopt);
}

TEST_P(ArchiveProcessor_, RepairsNamesAndModes)
{
    const QString closed = extract(world().archives.path("closed.tar"));
    EXPECT_TRUE(QFile::permissions(closed) & QFile::WriteOwner);
    EXPECT_TRUE(QFile::permissions(closed + "/d") & QFile::ExeOwner);
    EXPECT_TRUE(QFile::permissions(closed + "/d/a") & QFile::ReadOwner);
    const QString folder = extract(world().archives.path("names.tar"));
    EXPECT_EQ(tree(folder),
              QStringList({"a_b=1", "c__[31m=2", "c__[31m_2=5", "d_=4", QString(255, 'x') + "=3"}));
}

TEST_P(ArchiveProcessor_, KeepsTheLettersOfOtherCodePages)
{
    const std::pair<const char *, QString> cases[] = {{"cp850", "ação/São.txt"},
                                                      {"cp437", "ñandú/5√2.txt"},
                                                      {"cp932", "表.txt"},
                                                      {"gbk", "新建/测试.txt"}};
    for (const auto &[name, path] : cases) {
        const QString archive = world().archives.path(QString(name) + ".zip");
        EXPECT_EQ(ArchiveProcessor::list({url(archive), {}, engines()})[0].path, path);
        EXPECT_EQ(tree(extract(archive)).filter("="),
                  QStringList(path < "plain" ? QStringList{path + "=x", "plain=y"}
                                             : QStringList{"plain=y", path + "=x"}))
            << name;
    }
}

TEST_P(ArchiveProcessor_, LooksIntoACompressedTarWhateverItsName)
{
    for (const char *name : {"noname.tgz", "other.tar.gz", "dump.bz2", "x.tbz", "x.txz"})
        EXPECT_EQ(tree(extract(world().archives.path(name))).last(), "ção=1") << name;
    for (const QString kind : {"gz", "bz2", "xz"}) {
        for (const QString name : {"cut.tar.", "short.tar."})
            EXPECT_TRUE(std::holds_alternative<Error::Failed>(refusal(name + kind).value()))
                << qPrintable(name + kind);
    }
    files.write("notes", "no tar");
    run("gzip", {"notes"});
    if (GetParam() == Kind::sevenZip) {
        EXPECT_EQ(extract(files.path("notes.gz")), target.path("notes"));
    }
    files.write("pasta/sub/a", "a");
    run("bsdtar", {"--format", "xar", "-cf", "pasta.xar", "pasta"});
    EXPECT_EQ(tree(extract(files.path("pasta.xar"))), QStringList({"sub", "sub/a=a"}));
}

TEST_P(ArchiveProcessor_, TakesLittleSpaceForWhatIsRefused)
{
    constexpr int count = 60;
    QByteArray noise(2 << 20, Qt::Uninitialized);
    QRandomGenerator random(1);
    random.generate(reinterpret_cast<quint32 *>(noise.begin()),
                    reinterpret_cast<quint32 *>(noise.end()));
    files.write("in/0", noise);
    for (int i = 1; i <= count; ++i)
        files.write(QString("in/%1").arg(i), QByteArray(8 << 20, 'x'));
    run("bsdtar", {"--options", "compression-level=1", "-czf", "large.tar.gz", "in"});
    // Looked at a few hundred times a second.
    qint64 most = 0;
    int emptyAtLast = 0;
    const auto watched = [&](const QString &archive, qint64 limit) {
        most = 0;
        const std::jthread watcher([&](const std::stop_token &stop) {
            for (; !stop.stop_requested(); ::poll(nullptr, 0, 2)) {
                const qint64 size = StorageInspector::size(temporary.path());
                most = std::max(most, size);
                emptyAtLast = size == 0 ? emptyAtLast + 1 : 0;
            }
        });
        return refusal(archive, limit);
    };
    const qint64 limit = 300 << 20;
    EXPECT_EQ(watched(files.path("large.tar.gz"), limit), Error::Value(Error::TooLarge{limit}));
    EXPECT_LT(most, 250 << 20);

    // A tool that ends by the limit of a file's size leaves its space while the listing goes on.
    if (GetParam() == Kind::sevenZip)
        return; // lists before it unpacks
    const rlimit small = {4 << 20, RLIM_INFINITY};
    const rlimit none = {RLIM_INFINITY, RLIM_INFINITY};
    ::setrlimit(RLIMIT_FSIZE, &small);
    EXPECT_TRUE(watched(world().archives.path("long.tar.gz"), ArchiveProcessor::defaultSizeLimit));
    ::setrlimit(RLIMIT_FSIZE, &none);
    EXPECT_GT(emptyAtLast, 3);
}

TEST_P(ArchiveProcessor_, RefusesOrUnpacksAHundredThousandEntries)
{
    run("/usr/bin/python3", {MAKE_ARCHIVES, files.path()});
    EXPECT_EQ(refusal(files.path("manyabove.tar")), Error::Value(Error::UnsafeEntry{"../evil"}));
    if (GetParam() == Kind::sevenZip)
        return; // unpacks by the same steps, and as slowly
    const QString folder = extract(files.path("many.tar"));
    int count = 0;
    for (QDirIterator file(folder, QDir::Files, QDirIterator::Subdirectories); file.hasNext();
         file.next())
        ++count;
    EXPECT_EQ(count, 100'000);
}

TEST_P(ArchiveProcessor_, AsksForThePassword)
{
    files.write("a", "a");
    run("7zz", {"a", "-psecret", "sealed.zip", "a"});
    const QString archive = files.path("sealed.zip");
    EXPECT_EQ(refusal(archive), Error::Value(Error::PasswordRequired{}));
    EXPECT_EQ(refusal(archive, 1 << 20, "wrong"), Error::Value(Error::WrongPassword{}));
    EXPECT_EQ(extract(archive, 1 << 20, "secret"), target.path("a"));
    for (const char *content : {"no archive", ""}) {
        files.write("broken.zip", content);
        EXPECT_TRUE(std::holds_alternative<Error::Unsupported>(
            refusal(files.path("broken.zip"), 1 << 20).value()));
    }
    EXPECT_THROW(extract(files.path("absent.zip")), FileError);
}

TEST_P(ArchiveProcessor_, SaysWhyInTheWordsOfTheEngineThatKnowsMore)
{
    files.write("broken.zip", QByteArray("PK\3\4") + QByteArray(300, 'x'));
    const QUrl broken = url(files.path("broken.zip"));
    try {
        ArchiveProcessor::extract({broken, {}}, url(target.path()), 1 << 20, progress);
        FAIL();
    } catch (const Error &error) {
        EXPECT_EQ(error.value(), ArchiveListing::unrecognized().value());
    }
}

TEST_P(ArchiveProcessor_, MakesAnArchiveThatGivesTheSameBack)
{
    files.write("x/@ção*.txt", "1");
    files.write("x/sub/-a", "2");
    files.write("y/x/b", "3");
    files.write("-c", "4");
    QFile::link("-a", files.path("x/sub/link"));
    const auto zip = [&](const QStringList &names, const std::optional<QString> &name = {}) {
        std::vector<QUrl> urls;
        for (const QString &path : names)
            urls.push_back(url(files.path(path)));
        return ArchiveProcessor::zip(urls, name, {}, progress, {}, engines()).toLocalFile();
    };
    EXPECT_EQ(zip({"-c"}), files.path("-c.zip"));
    EXPECT_EQ(zip({"-c"}, "nome"), files.path("nome.zip"));
    EXPECT_EQ(zip({"x"}), files.path("x.zip"));
    EXPECT_EQ(zip({"x/@ção*.txt"}), files.path("x/@ção*.zip"));
    EXPECT_EQ(zip({"x/sub", "y/x", "x/sub/-a", "-c"}), files.path("x/Arquivos.zip"));
    EXPECT_EQ(zip({"x/sub", "x"}), files.path("x/Arquivos 2.zip"));
    EXPECT_THROW(zip({"x"}, "a/b"), Error);
    EXPECT_THROW(zip({"absent"}), FileError);
    const QString folder = extract(files.path("x/Arquivos.zip"));
    EXPECT_EQ(tree(folder).filter("="), QStringList({"-a=2", "-c=4", "sub/-a=2", "x/b=3"}));
    EXPECT_TRUE(QFileInfo(folder + "/sub/link").isSymLink());
    for (const ArchiveFormat format :
         {ArchiveFormat::zip, ArchiveFormat::sevenZip, ArchiveFormat::tarGzip}) {
        const auto made = [&] {
            return ArchiveProcessor::compress(format, {url(files.path("x"))}, "z", {}, progress, {},
                                              engines())
                .toLocalFile();
        };
        if (ArchiveEngine::find(GetParam())->makes(format))
            EXPECT_EQ(tree(extract(made())), tree(files.path("x")));
        else
            EXPECT_THROW(made(), Error);
    }
}

/// Processes of ours that run one of the tools.
int toolCount(const QString &mark)
{
    int count = 0;
    for (const QString &process : QDir("/proc").entryList({"[0-9]*"}, QDir::Dirs)) {
        QFile line("/proc/" + process + "/cmdline");
        if (line.open(QIODevice::ReadOnly) && line.readAll().contains(mark.toUtf8()))
            ++count;
    }
    return count;
}

TEST_P(ArchiveProcessor_, LeavesNothingWhereTheTargetFails)
{
    const QString archive = world().archives.path("folder.zip");
    files.write("file", "");
    for (const char *folder : {"absent", "file", "/proc"}) {
        EXPECT_THROW(ArchiveProcessor::extract({url(archive), {}, engines()},
                                               url(QDir(files.path()).filePath(folder)), 1 << 20,
                                               progress),
                     FileError)
            << folder;
        EXPECT_THROW(ArchiveProcessor::zip({url(files.path("file"))}, {},
                                           url(QDir(files.path()).filePath(folder)), progress, {},
                                           engines()),
                     FileError)
            << folder;
    }
    EXPECT_EQ(files.names(), QStringList("file"));
    // A disk of 4 MiB, where this may mount one.
    QDir(files.path()).mkdir("disk");
    if (QProcess::execute("mount", {"-t", "tmpfs", "-o", "size=4m", "none", files.path("disk")}))
        GTEST_SKIP() << "Needs to be root.";
    qputenv("TMPDIR", files.path("disk").toLocal8Bit());
    try {
        extract(world().archives.path("bomb.zip"));
        ADD_FAILURE() << "unpacked 40 MiB into 4";
    } catch (const FileError &error) {
        EXPECT_EQ(error.description(), u"Falha em “bomb.zip”: não há espaço livre no disco.");
    }
    EXPECT_EQ(refusal("bomb.tar", 1 << 24), Error::Value(Error::TooLarge{1 << 24}));
    EXPECT_EQ(extract(world().archives.path("folder.zip")), target.path("pasta"));
    EXPECT_EQ(tree(files.path("disk")), QStringList());
    EXPECT_EQ(QProcess::execute("umount", {files.path("disk")}), 0);
}

TEST_P(ArchiveProcessor_, LeavesNothingOfACancelledJob)
{
    for (int i = 0; i < 30; ++i)
        files.write(QString("in/%1").arg(i), QByteArray(8 << 20, char(i)));
    run("bsdtar", {"-cJf", "slow.tar.xz", "in"});
    QByteArray noise(8 << 20, Qt::Uninitialized);
    QRandomGenerator random(1);
    random.generate(reinterpret_cast<quint32 *>(noise.begin()),
                    reinterpret_cast<quint32 *>(noise.end()));
    for (int i = 0; i < 30; ++i)
        files.write(QString("in/%1").arg(i), noise); // which is slow to make small
    const QString archive = files.path("slow.tar.xz");
    SystemScheduler clock;
    ActivityCenter activity({}, {}, clock, 7);
    JobCenter jobs(activity, clock);
    const auto cancelled = [&](const auto &work) {
        const QString id = jobs.run("Extrair", "doc.zipper", "files",
                                    [&](JobProgress &share, std::stop_token stop) {
                                        return JobOutcome{"", {}, {work(share, stop)}};
                                    });
        while (toolCount(temporary.path()) == 0 && jobs.runningCount() != 0)
            QCoreApplication::processEvents();
        activity.cancel(id);
        while (jobs.runningCount() != 0)
            QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
        EXPECT_EQ(activity.history().front().title, "Extrair: cancelado");
        EXPECT_EQ(toolCount(temporary.path()), 0);
        EXPECT_EQ(target.names(), QStringList());
        EXPECT_EQ(files.names(), QStringList({"in", "slow.tar.xz"}));
        EXPECT_EQ(temporary.names(), QStringList());
    };
    cancelled([&](JobProgress &share, std::stop_token stop) {
        return ArchiveProcessor::extract({url(archive), {}, engines()}, url(target.path()),
                                         ArchiveProcessor::defaultSizeLimit, share, stop);
    });
    cancelled([&](JobProgress &share, std::stop_token stop) {
        return ArchiveProcessor::zip({url(files.path("in"))}, {}, {}, share, stop, engines());
    });
}

INSTANTIATE_TEST_SUITE_P(, ArchiveProcessor_, testing::Values(Kind::sevenZip, Kind::bsdtar),
                         [](const auto &kind) {
                             return kind.param == Kind::sevenZip ? "SevenZip" : "Bsdtar";
                         });

} // namespace
} // namespace velmo
