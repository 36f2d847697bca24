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
/// a new folder each time, in turn. Archives [ROUNDS [NAME]]; prints the best times as rows of
/// Markdown, of those whose name holds NAME.
namespace velmo {
namespace {

using Work = std::function<void(const QString &folder)>;

void write(const QString &path, const QByteArray &data)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(data) != data.size())
        qFatal("Can't write %s", qPrintable(path));
}

/// Texts, the first one of more kinds of characters than the others.
class Texts {
public:
    QByteArray next(int size)
    {
        QByteArray data(size, '\0');
        std::ranges::generate(data, [&] { return char('0' + m_random() % m_alphabet); });
        m_alphabet = 20;
        return data;
    }
    int sizeBelow(int limit) { return int(m_random() % unsigned(limit)); }

private:
    std::mt19937 m_random{1};
    unsigned m_alphabet = 200;
};

/// "tree": 10,000 files of up to 6 kB in 100 folders, and three of 32 MB. "everyday": 20 files of
/// 50 kB. "single": one of 1 MB.
void makeFolders(const QDir &root)
{
    Texts texts;
    const auto add = [&](const QString &path, int size) {
        const QString file = root.filePath(path);
        QDir().mkpath(QFileInfo(file).path());
        write(file, texts.next(size));
    };
    for (int i = 0; i < 3; ++i)
        add(QStringLiteral("tree/large %1").arg(i), 32'000'000);
    for (int i = 0; i < 10'000; ++i)
        add(QStringLiteral("tree/%1/%2.txt").arg(i % 100).arg(i), texts.sizeBelow(6000));
    for (int i = 0; i < 20; ++i)
        add(QStringLiteral("everyday/%1.txt").arg(i), 50'000);
    add(QStringLiteral("single/a.txt"), 1'000'000);
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
void compare(const QByteArray &what, const QString &root, int rounds,
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
        std::printf("| %s | %s | %.1f | %.1f |", what.constData(), works[i].first, cost.wall,
                    cost.cpu);
        if (i + 1 == works.size())
            std::printf(" %.2f | %.2f |", cost.wall / bare.wall, cost.cpu / bare.cpu);
        std::printf("\n");
        std::fflush(stdout);
        bare = bare.best(cost);
    }
}

class Comparison {
public:
    Comparison(int rounds, QByteArray names) : m_rounds(rounds), m_names(std::move(names))
    {
        QDir(m_root.path()).mkdir(QStringLiteral("out"));
        qputenv("TMPDIR", QFile::encodeName(m_root.filePath(QStringLiteral("out"))));
        makeFolders(m_root.path());
    }

    void unpack(const char *folder, const char *ending, int times = 1);
    void zip(const char *folder);

private:
    bool isWanted(const QByteArray &name) const { return name.contains(m_names); }

    const QTemporaryDir m_root;
    const int m_rounds;
    const QByteArray m_names;
    const QString m_sevenZip = ArchiveEngine::find(ArchiveEngine::Kind::sevenZip)->tool();
    const QString m_bsdtar = ArchiveEngine::find(ArchiveEngine::Kind::bsdtar)->tool();
    SystemScheduler m_scheduler;
    JobProgress m_progress{m_scheduler, [](auto, const auto &) {}};
};

void Comparison::unpack(const char *folder, const char *ending, int times)
{
    const QByteArray name = QByteArray(folder) + ending;
    if (!isWanted(name))
        return;
    const QString archive = m_root.filePath(QString::fromLatin1(name));
    QStringList making = {QStringLiteral("-caf"), archive, QString::fromLatin1(folder)};
    if (name.endsWith('z'))
        making = QStringList{"--options", "compression-level=1"} + making;
    tool(m_bsdtar, making, m_root.path());
    const QString wrapped = QLatin1String(folder) + QStringLiteral(".tar");
    compare(name, m_root.path(), m_rounds * times,
            {{"7zz",
              [&](const QString &out) {
                  tool(m_sevenZip, {"x", "-y", "-bsp0", "-bso0", archive}, out);
                  if (QFileInfo(out + u'/' + wrapped).isFile())
                      tool(m_sevenZip, {"x", "-y", "-bsp0", "-bso0", wrapped}, out);
              }},
             {"bsdtar",
              [&](const QString &out) {
                  tool(m_bsdtar, {"-xf", archive}, out);
              }},
             {"Orvane", [&](const QString &out) {
                  ArchiveProcessor::extract({QUrl::fromLocalFile(archive), {}},
                                            QUrl::fromLocalFile(out),
                                            ArchiveProcessor::defaultSizeLimit, m_progress);
              }}});
}

void Comparison::zip(const char *folder)
{
    const QString name = QString::fromLatin1(folder);
    if (!isWanted("make " + name.toLatin1()))
        return;
    const auto making = [&](const QString &program, const QStringList &arguments) {
        return [=, this](const QString &out) {
            tool(program, arguments + QStringList{out + QStringLiteral("/a.zip"), name},
                 m_root.path());
        };
    };
    compare("make " + name.toLatin1(), m_root.path(), m_rounds,
            {{"7zz, level 1", making(m_sevenZip, {"a", "-tzip", "-mx1", "-bsp0", "-bso0"})},
             {"bsdtar", making(m_bsdtar, {"--format", "zip", "-cf"})},
             {"zip", making(QStringLiteral("/usr/bin/zip"), {"-qr"})},
             {"Orvane", [&](const QString &out) {
                  ArchiveProcessor::zip({QUrl::fromLocalFile(m_root.filePath(name))}, std::nullopt,
                                        QUrl::fromLocalFile(out), m_progress);
              }}});
}

} // namespace
} // namespace velmo

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    velmo::Comparison comparison(argc > 1 ? std::atoi(argv[1]) : 7, argc > 2 ? argv[2] : "");
    for (const char *ending : {".zip", ".7z", ".tar", ".tar.gz"})
        comparison.unpack("tree", ending);
    constexpr int often = 10;
    for (const char *folder : {"everyday", "single"}) {
        for (const char *ending : {".zip", ".7z", ".tar.gz"})
            comparison.unpack(folder, ending, often);
    }
    comparison.zip("tree");
}
