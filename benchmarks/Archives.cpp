#include "VelmoCore/Foundation/SystemScheduler.h"
#include "VelmoSystem/FileProcessing/ArchiveProcessor.h"

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <limits>
#include <random>
#include <sys/resource.h>
#include <unistd.h>

/// What Orvane's care costs over the bare tools: the same archives unpacked and made by both, into
/// a new folder each time, in turn. Archives [ROUNDS]; prints the best times as rows of Markdown.
namespace velmo {
namespace {

using Work = std::function<void(const QString &folder)>;

void write(const QString &path, const QByteArray &data)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
        qFatal("Can't write %s", qPrintable(path));
}

/// 10,000 files of up to 6 kB of text in 100 folders, and three of 32 MB.
void makeTree(const QString &folder)
{
    std::mt19937 random(1);
    const auto bytes = [&](int count, unsigned alphabet) {
        QByteArray data(count, '\0');
        std::ranges::generate(data, [&] { return char('0' + random() % alphabet); });
        return data;
    };
    for (int i = 0; i < 10'000; ++i) {
        const QString parent = QStringLiteral("%1/%2").arg(folder).arg(i % 100);
        QDir().mkpath(parent);
        write(QStringLiteral("%1/%2.txt").arg(parent).arg(i), bytes(int(random() % 6000), 20));
    }
    for (int i = 0; i < 3; ++i)
        write(QStringLiteral("%1/large %2").arg(folder).arg(i),
              bytes(32'000'000, i == 0 ? 200 : 20));
}

void tool(const QString &program, const QStringList &arguments, const QString &folder)
{
    ToolCommand command{program, arguments};
    command.workingFolder = folder;
    if (const ProcessResult result = ToolProcess::run(command); result.status != 0)
        qFatal("%s: %s", qPrintable(program), qPrintable(result.standardError));
}

/// Milliseconds by the clock, and of the processor with all programs that were started.
struct Cost {
    double wall = std::numeric_limits<double>::infinity();
    double cpu = std::numeric_limits<double>::infinity();

    Cost best(const Cost &other) const
    {
        return {std::min(wall, other.wall), std::min(cpu, other.cpu)};
    }
};

double usedProcessor()
{
    double sum = 0;
    for (const int who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
        rusage usage = {};
        ::getrusage(who, &usage);
        for (const timeval &part : {usage.ru_utime, usage.ru_stime})
            sum += double(part.tv_sec) * 1e3 + double(part.tv_usec) / 1e3;
    }
    return sum;
}

Cost costOf(const QString &root, const Work &work)
{
    QTemporaryDir folder(root + QStringLiteral("/run-XXXXXX"));
    ::sync();
    const double used = usedProcessor();
    const auto start = std::chrono::steady_clock::now();
    work(folder.path());
    const std::chrono::duration<double, std::milli> wall = std::chrono::steady_clock::now() - start;
    return {wall.count(), usedProcessor() - used};
}

/// The bare tools and ours, which comes last.
void compare(const char *what, const QString &root, int rounds,
             const std::vector<std::pair<const char *, Work>> &works)
{
    std::vector<Cost> costs(works.size());
    for (int round = 0; round < rounds; ++round) {
        for (std::size_t i = 0; i < works.size(); ++i)
            costs[i] = costs[i].best(costOf(root, works[i].second));
    }
    Cost bare;
    for (std::size_t i = 0; i < works.size(); ++i) {
        const Cost &cost = costs[i];
        std::printf("| %s | %s | %.0f | %.0f |", what, works[i].first, cost.wall, cost.cpu);
        if (i + 1 == works.size())
            std::printf(" %.2f | %.2f |", cost.wall / bare.wall, cost.cpu / bare.cpu);
        std::printf("\n");
        std::fflush(stdout);
        bare = bare.best(cost);
    }
}

void run(int rounds)
{
    const QTemporaryDir root;
    QDir(root.path()).mkdir(QStringLiteral("out"));
    qputenv("TMPDIR", QFile::encodeName(root.filePath(QStringLiteral("out"))));
    makeTree(root.filePath(QStringLiteral("tree")));
    const QString sevenZip = ArchiveEngine::find(ArchiveEngine::Kind::sevenZip)->tool();
    const QString bsdtar = ArchiveEngine::find(ArchiveEngine::Kind::bsdtar)->tool();
    SystemScheduler scheduler;
    JobProgress progress(scheduler, [](auto, const auto &) {});

    const QString tree = root.filePath(QStringLiteral("tree"));
    for (const char *name : {"tree.zip", "tree.7z", "tree.tar", "tree.tar.gz"}) {
        const QString archive = root.filePath(QLatin1String(name));
        tool(bsdtar,
             QStringList{"-caf", archive} +
                 (archive.endsWith(u"z") ? QStringList{"--options", "compression-level=1"}
                                         : QStringList()) +
                 QStringList{"tree"},
             root.path());
        const auto bySevenZip = [&](const QString &folder) {
            tool(sevenZip, {"x", "-y", "-bsp0", "-bso0", archive}, folder);
            if (QFileInfo(folder + QStringLiteral("/tree.tar")).isFile())
                tool(sevenZip, {"x", "-y", "-bsp0", "-bso0", "tree.tar"}, folder);
        };
        compare(name, root.path(), rounds,
                {{"7zz", bySevenZip},
                 {"bsdtar",
                  [&](const QString &folder) {
                      tool(bsdtar, {"-xf", archive}, folder);
                  }},
                 {"Orvane", [&](const QString &folder) {
                      ArchiveProcessor::extract({QUrl::fromLocalFile(archive), {}},
                                                QUrl::fromLocalFile(folder),
                                                ArchiveProcessor::defaultSizeLimit, progress);
                  }}});
    }
    const auto making = [&](const QString &program, const QStringList &arguments) {
        return [=, &root](const QString &folder) {
            tool(program, arguments + QStringList{folder + QStringLiteral("/a.zip"), "tree"},
                 root.path());
        };
    };
    compare("make a ZIP", root.path(), rounds,
            {{"7zz, level 1", making(sevenZip, {"a", "-tzip", "-mx1", "-bsp0", "-bso0"})},
             {"bsdtar", making(bsdtar, {"--format", "zip", "-cf"})},
             {"zip", making(QStringLiteral("/usr/bin/zip"), {"-qr"})},
             {"Orvane", [&](const QString &folder) {
                  ArchiveProcessor::zip({QUrl::fromLocalFile(tree)}, std::nullopt,
                                        QUrl::fromLocalFile(folder), progress);
              }}});
}

} // namespace
} // namespace velmo

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    velmo::run(argc > 1 ? std::atoi(argv[1]) : 7);
}
