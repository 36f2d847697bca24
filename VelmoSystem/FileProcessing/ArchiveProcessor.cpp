#include "VelmoSystem/FileProcessing/ArchiveProcessor.h"

#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Files/FileTransfer.h"
#include "VelmoCore/Files/NativeFiles.h"
#include "VelmoSystem/FileProcessing/ArchiveSource.h"
#include "VelmoSystem/FileProcessing/ExtractedTree.h"
#include "VelmoSystem/FileProcessing/PrivateFolder.h"
#include "VelmoSystem/Storage/StorageInspector.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>
#include <limits>
#include <set>
#include <sys/stat.h>

namespace velmo {
namespace {

using namespace std::chrono_literals;

/// Throws where the tool found no space for what it made of the user's file or for it.
void requireSpace(const ProcessResult &result, const QString &file)
{
    if (result.status != 0 && (result.standardError + QString::fromUtf8(result.standardOutput))
                                  .contains(u"No space left on device"))
        throw FileError(file, ENOSPC);
}

/// What may be unpacked of an archive before its listing is known, in bytes: of usual ones all, of
/// one that holds a hundred times its own size little.
qint64 allowance(const QString &archive)
{
    constexpr qint64 least = 64 << 20;
    constexpr qint64 most = 1 << 30;
    constexpr qint64 usualShrinking = 8;
    return std::clamp(usualShrinking * QFileInfo(archive).size(), least, most);
}

/// One run of the tool, with an eye on what it writes.
class Unpacking {
public:
    Unpacking(ArchiveSource &source, const QString &folder, qint64 sizeLimit)
        : m_source(source), m_folder(folder), m_sizeLimit(sizeLimit)
    {
    }

    ExtractedTree::Contents run(JobProgress *progress, const std::stop_token &stop);

private:
    bool isCheckedMeanwhile() const;
    void guardSize(ToolProcess &process, JobProgress *progress);
    void explainFailure(const ProcessResult &result, const std::stop_token &stop);

    ArchiveSource &m_source;
    QString m_folder;
    qint64 m_sizeLimit;
    std::optional<ArchiveCheck> m_meanwhile;
    std::optional<qint64> m_sum; ///< of the sizes, once the listing is checked
};

/// An archive is listed and checked before a byte is written. Only a compressed tar takes as long
/// to list as to unpack: that is checked meanwhile, if its tool follows no link that it made and
/// can write nowhere else, and halts where the allowance ends.
bool Unpacking::isCheckedMeanwhile() const
{
    constexpr qint64 quickToList = 1 << 20;
    const QString &archive = m_source.input.archive;
    return ArchiveEngine::isCompressedTar(archive) && QFileInfo(archive).size() > quickToList &&
           m_source.engine.isCareful() && ToolProcess::canConfine();
}

void Unpacking::guardSize(ToolProcess &process, JobProgress *progress)
{
    if (m_meanwhile)
        m_sum = m_meanwhile->poll();
    const qint64 size = StorageInspector::size(m_folder);
    if (size > m_sizeLimit)
        throw ArchiveError(ArchiveError::TooLarge{m_sizeLimit});
    if (m_meanwhile)
        process.halt(!m_sum && size > allowance(m_source.input.archive));
    if (m_sum && progress)
        progress->update(std::min(1.0, double(size) / double(std::max<qint64>(*m_sum, 1))));
}

/// Frees what the tool took before anything else: the check may take minutes to its end. What it
/// finds says more than a tool's own words.
void Unpacking::explainFailure(const ProcessResult &result, const std::stop_token &stop)
{
    const bool isTooLarge = StorageInspector::size(m_folder) > m_sizeLimit;
    ExtractedTree::remove(m_folder);
    if (isTooLarge)
        throw ArchiveError(ArchiveError::TooLarge{m_sizeLimit});
    requireSpace(result, m_source.input.archive);
    if (m_meanwhile)
        m_meanwhile->wait(stop);
    m_source.succeed(result);
}

ExtractedTree::Contents Unpacking::run(JobProgress *progress, const std::stop_token &stop)
{
    constexpr auto usualInterval = 250ms;
    constexpr auto shortInterval = 50ms; // in which not much more than the allowance is written
    if (isCheckedMeanwhile())
        m_meanwhile.emplace(m_source, m_sizeLimit);
    else
        m_sum = m_source.check(m_sizeLimit, stop);
    NativeFiles::heed(stop);
    ToolProcess process(m_source.engine.extraction(m_source.input, m_folder));
    while (!process.waitFor(m_sum ? usualInterval : shortInterval)) {
        NativeFiles::heed(stop);
        guardSize(process, progress);
    }
    const ProcessResult result = process.result();
    if (result.status != 0)
        explainFailure(result, stop);
    if (m_meanwhile)
        m_meanwhile->wait(stop);
    const ExtractedTree::Contents contents =
        ExtractedTree::makeOrdinary(m_folder, m_source.input.codePage);
    if (contents.size > m_sizeLimit)
        throw ArchiveError(ArchiveError::TooLarge{m_sizeLimit});
    return contents;
}

/// The archive itself, or the tar in it, unpacked beneath `folder`.
ArchiveSource unwrapped(ArchiveSource source, const PrivateFolder &folder, qint64 sizeLimit,
                        const std::stop_token &stop)
{
    constexpr qint64 headers = 256 << 20; // and padding, which the contents are without
    if (!source.holdsTar(sizeLimit, stop))
        return source;
    const QString wrapped = folder.makeFolder(QStringLiteral("tar"));
    const bool isNearMaximum = sizeLimit > std::numeric_limits<qint64>::max() - headers;
    source.known.emplace(); // its size is a guess, wild where the file is cut; the tar's is checked
    Unpacking(source, wrapped, isNearMaximum ? sizeLimit : sizeLimit + headers).run(nullptr, stop);
    const QFileInfoList files = QDir(wrapped).entryInfoList(QDir::Files | QDir::NoSymLinks);
    if (files.size() != 1)
        throw ArchiveError(ArchiveError::Failed{});
    return {source.engine, {files.first().absoluteFilePath(), std::nullopt}};
}

QStringList topLevel(const QString &folder)
{
    QStringList names = QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System |
                                               QDir::NoDotAndDotDot);
    names.removeAll(QStringLiteral("__MACOSX"));
    return names;
}

/// Removes links from `content` that lead out, if there are any, and gives the path of what the
/// user is to have, which lies in `folder` under the name that it is to have.
QString cleaned(const PrivateFolder &folder, const QString &content, const QString &baseName,
                bool hasLinks)
{
    if (hasLinks)
        ExtractedTree::removeEscapingLinks(content);
    QStringList names = topLevel(content);
    if (names.size() == 1) {
        // It leaves `content`, so what it holds may not lead there.
        const QString only = content + u'/' + names.first();
        if (QFileInfo(only).isSymLink()) {
            QFile::remove(only);
            names.clear();
        } else {
            if (hasLinks && QFileInfo(only).isDir())
                ExtractedTree::removeEscapingLinks(only);
            return only;
        }
    }
    const QString result = folder.makeFolder(QStringLiteral("result"));
    const QString named = result + u'/' + baseName;
    if (::mkdir(QFile::encodeName(named).constData(), 0777) != 0)
        throw FileError(named, errno);
    for (const QString &name : names)
        FileTransfer::move(content + u'/' + name, named + u'/' + name);
    return named;
}

/// Across file systems by a plain copy: what it is copied from isn't the only one.
QUrl handOver(const QString &made, const QString &target, const std::stop_token &stop)
{
    const QUrl from = QUrl::fromLocalFile(made);
    const QUrl to = QUrl::fromLocalFile(target);
    if (const std::optional<QUrl> renamed = FileTransfer::renameUnique(from, to))
        return *renamed;
    return FileTransfer::copyUnique(from, to, stop);
}

QUrl extractBy(const ArchiveEngine &engine, const ArchiveProcessor::Request &request,
               const QUrl &destination, qint64 sizeLimit, JobProgress &progress,
               const std::stop_token &stop)
{
    const QFileInfo archive(request.archive.toLocalFile());
    const PrivateFolder folder(PrivateFolder::Purpose::extraction);
    const QString content = folder.makeFolder(QStringLiteral("content"));
    ArchiveSource source = unwrapped({engine, {archive.absoluteFilePath(), request.password}},
                                     folder, sizeLimit, stop);
    const bool hasLinks = Unpacking(source, content, sizeLimit).run(&progress, stop).hasLinks;
    const QString result =
        cleaned(folder, content, ArchiveListing::baseName(archive.fileName()), hasLinks);
    const QString target = destination.toLocalFile() + u'/' + QFileInfo(result).fileName();
    const QUrl made = handOver(result, target, stop);
    progress.update(1.0, std::nullopt, true);
    return made;
}

ArchiveError noEngine()
{
    return ArchiveError(ArchiveError::Unsupported{
        QStringLiteral("nem 7zz nem bsdtar está instalado neste computador.")});
}

ArchiveError noMaker(ArchiveFormat format)
{
    return ArchiveError(ArchiveError::Unsupported{
        QStringLiteral("nenhum programa que crie %1 está instalado neste computador.")
            .arg(ArchiveEngine::suffix(format))});
}

/// Where one engine doesn't know the format or fails, the next one may do better.
bool isWorthAnother(const ArchiveError &error)
{
    return std::holds_alternative<ArchiveError::Unsupported>(error.value()) ||
           std::holds_alternative<ArchiveError::Failed>(error.value());
}

template <class Work>
auto byFirstThatCan(const ArchiveProcessor::Engines &given, const QString &archive,
                    const Work &work)
{
    const std::vector<ArchiveEngine> engines = given ? *given : ArchiveEngine::all(archive);
    std::exception_ptr reason; // 7-Zip's where it has one: it knows more formats, and says more
    for (const ArchiveEngine &engine : engines) {
        try {
            return work(engine);
        } catch (const ArchiveError &error) {
            if (!isWorthAnother(error))
                throw;
            if (!reason || engine.kind() == ArchiveEngine::Kind::sevenZip)
                reason = std::current_exception();
        }
    }
    if (reason)
        std::rethrow_exception(reason);
    throw noEngine();
}

void requireFile(const QUrl &file)
{
    const QString path = file.toLocalFile();
    if (!QFileInfo::exists(path))
        throw FileError(path, ENOENT);
}

/// bsdtar takes a file without a byte for an archive without an entry.
void requireArchive(const QUrl &archive)
{
    requireFile(archive);
    if (QFileInfo(archive.toLocalFile()).size() == 0)
        throw ArchiveListing::unrecognized();
}

/// The items' paths, each with a name of its own: one whose name another has already is copied
/// under a free one.
QStringList distinct(const std::vector<QUrl> &urls, const PrivateFolder &folder,
                     const std::stop_token &stop)
{
    const QString copies = folder.makeFolder(QStringLiteral("copies"));
    std::set<QString> taken;
    const auto isTaken = [&](const QUrl &url) { return taken.contains(url.fileName()); };
    QStringList items;
    for (const QUrl &url : urls) {
        const QString path = QDir::cleanPath(url.toLocalFile());
        const QString name = QFileInfo(path).fileName();
        QString item = path;
        if (taken.contains(name)) {
            const QUrl copy = QUrl::fromLocalFile(copies + u'/' + name);
            item = FileNaming::uniqueURL(copy, isTaken).toLocalFile();
            FileTransfer::copy(path, item, stop);
        }
        taken.insert(QFileInfo(item).fileName());
        items.append(item);
    }
    return items;
}

QString archiveName(const std::vector<QUrl> &urls, const std::optional<QString> &name,
                    const QString &suffix)
{
    if (!name && urls.size() != 1)
        return QStringLiteral("Arquivos") + suffix;
    if (!name) {
        const QString own = QFileInfo(QDir::cleanPath(urls[0].toLocalFile())).fileName();
        const qsizetype dot = own.lastIndexOf(u'.');
        return (dot > 0 ? own.left(dot) : own) + suffix;
    }
    if (!FileNaming::isValid(*name + suffix))
        throw ArchiveError(
            ArchiveError::Failed{QStringLiteral("O nome “%1” não pode ser usado.").arg(*name)});
    return *name + suffix;
}

/// The share that 7-Zip says last, as " 42%".
std::optional<double> toldShare(const QByteArray &output)
{
    const qsizetype percent = output.lastIndexOf('%');
    qsizetype start = percent;
    while (start > 0 && output[start - 1] >= '0' && output[start - 1] <= '9')
        --start;
    if (percent < 0 || start == percent)
        return std::nullopt;
    return output.mid(start, percent - start).toDouble() / 100;
}

QUrl makeBy(const ArchiveEngine &engine, ArchiveFormat format, const std::vector<QUrl> &urls,
            const QUrl &target, JobProgress &progress, const std::stop_token &stop)
{
    const PrivateFolder folder(PrivateFolder::Purpose::compression);
    const QString archive = folder.path(QStringLiteral("archive") + ArchiveEngine::suffix(format));
    const QStringList items = distinct(urls, folder, stop);
    for (const ToolCommand &command : engine.compression(archive, items, std::nullopt, format)) {
        const ProcessResult result =
            ToolProcess::run(command, stop, [&](const ToolProcess &process) {
                progress.update(toldShare(process.output()));
            });
        requireSpace(result, target.toLocalFile());
        if (result.status != 0)
            throw ArchiveError(ArchiveError::Failed{engine.compressionFailure(result)});
    }
    return handOver(archive, target.toLocalFile(), stop);
}

} // namespace

std::vector<ArchiveEntry> ArchiveProcessor::list(const Request &request, std::stop_token stop)
{
    requireArchive(request.archive);
    const QString path = QFileInfo(request.archive.toLocalFile()).absoluteFilePath();
    return byFirstThatCan(request.engines, path, [&](const ArchiveEngine &engine) {
        const PrivateFolder folder(PrivateFolder::Purpose::extraction);
        return unwrapped({engine, {path, request.password}}, folder, defaultSizeLimit, stop)
            .listing(stop)
            .entries;
    });
}

QUrl ArchiveProcessor::extract(const Request &request, const std::optional<QUrl> &destination,
                               qint64 sizeLimit, JobProgress &progress, std::stop_token stop)
{
    requireArchive(request.archive);
    const QFileInfo archive(request.archive.toLocalFile());
    const QUrl folder = destination.value_or(QUrl::fromLocalFile(archive.absolutePath()));
    return byFirstThatCan(request.engines, archive.fileName(), [&](const ArchiveEngine &engine) {
        return extractBy(engine, request, folder, sizeLimit, progress, stop);
    });
}

QUrl ArchiveProcessor::zip(const std::vector<QUrl> &urls, const std::optional<QString> &name,
                           const std::optional<QUrl> &destination, JobProgress &progress,
                           std::stop_token stop, const Engines &engines)
{
    return compress(ArchiveFormat::zip, urls, name, destination, progress, stop, engines);
}

QUrl ArchiveProcessor::compress(ArchiveFormat format, const std::vector<QUrl> &urls,
                                const std::optional<QString> &name,
                                const std::optional<QUrl> &destination, JobProgress &progress,
                                const std::stop_token &stop, const Engines &engines)
{
    if (urls.empty())
        throw ArchiveError(ArchiveError::Failed{QStringLiteral("Não há nada para comprimir.")});
    for (const QUrl &url : urls)
        requireFile(url);
    const QString file = archiveName(urls, name, ArchiveEngine::suffix(format));
    const QString folder =
        destination ? destination->toLocalFile() : QFileInfo(urls[0].toLocalFile()).absolutePath();
    const QUrl target = QUrl::fromLocalFile(folder + u'/' + file);
    const std::vector<ArchiveEngine> choice = engines ? *engines : ArchiveEngine::allThatMake();
    const auto engine = std::ranges::find_if(
        choice, [format](const ArchiveEngine &candidate) { return candidate.makes(format); });
    if (engine == choice.end())
        throw choice.empty() ? noEngine() : noMaker(format);
    const QUrl made = makeBy(*engine, format, urls, target, progress, stop);
    progress.update(1.0, std::nullopt, true);
    return made;
}

} // namespace velmo
