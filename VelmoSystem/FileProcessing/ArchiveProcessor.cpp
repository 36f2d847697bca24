#include "VelmoSystem/FileProcessing/ArchiveProcessor.h"

#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Files/FileTransfer.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoSystem/FileProcessing/ExtractedTree.h"
#include "VelmoSystem/Storage/StorageInspector.h"

#include <QDir>
#include <QFileInfo>
#include <QUuid>

#include <algorithm>
#include <array>
#include <cerrno>
#include <future>
#include <set>
#include <sys/stat.h>

namespace velmo {
namespace {

using namespace std::chrono_literals;

/// In the system's temporary directory, for nobody else. Goes with its owner, whatever happens.
class PrivateFolder {
public:
    explicit PrivateFolder(const QString &prefix)
        : m_path(QDir::tempPath() + u'/' + prefix + u'-' +
                 QUuid::createUuid().toString(QUuid::WithoutBraces).toUpper())
    {
        make(m_path);
    }
    PrivateFolder(const PrivateFolder &) = delete;
    PrivateFolder &operator=(const PrivateFolder &) = delete;
    ~PrivateFolder()
    {
        try {
            ExtractedTree::remove(m_path);
        } catch (const FileError &error) {
            qCWarning(Log::storage, "%s", qPrintable(error.description()));
        }
    }

    const QString &path() const { return m_path; }
    QString path(const QString &name) const { return m_path + u'/' + name; }

    QString makeFolder(const QString &name) const
    {
        make(path(name));
        return path(name);
    }

private:
    static void make(const QString &path)
    {
        if (::mkdir(QFile::encodeName(path).constData(), S_IRWXU) != 0)
            throw FileError(path, errno);
    }

    QString m_path;
};

/// Throws where the tool found no space. `file` is what the user knows of it.
void requireSpace(const ProcessResult &result, const QString &file)
{
    if (result.status != 0 &&
        (result.standardError + result.standardOutput).contains(u"No space left on device"))
        throw FileError(file, ENOSPC);
}

struct Listing {
    std::vector<ArchiveEntry> entries;
    ProcessResult text;
};

/// An archive that is being read by one engine.
struct Source {
    ArchiveEngine engine;
    QString archive;
    std::optional<QString> password;
    std::optional<Listing> known = std::nullopt;

    const Listing &listing(const std::stop_token &stop);
    void succeed(const ProcessResult &result) const
    {
        if (result.status != 0)
            throw engine.error(result, password.has_value());
    }
};

const Listing &Source::listing(const std::stop_token &stop)
{
    constexpr qsizetype longest = 512 << 20; // it is held in memory
    if (known)
        return *known;
    Listing listing;
    const ToolCommand command = engine.listing(archive, password);
    listing.text = ToolProcess::run(command, stop, [](const ToolProcess &process) {
        if (process.output().size() > longest)
            throw ArchiveError(ArchiveError::Unsupported{
                QStringLiteral("o arquivo compactado tem itens demais.")});
    });
    succeed(listing.text);
    listing.entries = engine.entries(listing.text);
    return known.emplace(std::move(listing));
}

/// Gives the sum of the sizes. Throws for what isn't unpacked.
qint64 check(Source &source, qint64 sizeLimit, const std::stop_token &stop)
{
    const Listing &listing = source.listing(stop);
    ArchiveListing::check(listing.entries, sizeLimit);
    source.engine.checkKinds(listing.text);
    qint64 sum = 0;
    for (const ArchiveEntry &entry : listing.entries)
        sum += std::max<qint64>(entry.size, 0);
    return sum;
}

/// Lists and checks on a thread of its own.
class Check {
public:
    Check(Source source, qint64 sizeLimit)
        : m_sum(std::async(std::launch::async, [source = std::move(source), sizeLimit,
                                                stop = m_stop.get_token()]() mutable {
              return check(source, sizeLimit, stop);
          }))
    {
    }
    ~Check() { m_stop.request_stop(); }

    /// The sum of all sizes once it is known; throws what the check throws.
    std::optional<qint64> poll()
    {
        if (m_sum.valid() && m_sum.wait_for(0s) == std::future_status::ready)
            m_known = m_sum.get();
        return m_known;
    }

    void wait(const std::stop_token &stop)
    {
        const std::stop_callback forward(stop, [this] { m_stop.request_stop(); });
        if (m_sum.valid())
            m_known = m_sum.get();
    }

private:
    std::stop_source m_stop;
    std::future<qint64> m_sum;
    std::optional<qint64> m_known;
};

void guardSize(const QString &folder, qint64 sizeLimit, const std::optional<qint64> &sum,
               JobProgress *progress)
{
    const qint64 size = StorageInspector::size(folder);
    if (size > sizeLimit)
        throw ArchiveError(ArchiveError::TooLarge{sizeLimit});
    if (sum && progress)
        progress->update(std::min(1.0, double(size) / double(std::max<qint64>(*sum, 1))));
}

/// Unpacks into `folder`. What is in a small archive is checked before a byte is written. A larger
/// one is checked meanwhile, if its tool follows no link that it made and can write nowhere else:
/// what it wrote so far goes with the folder when the check refuses.
ExtractedTree::Contents unpack(Source &source, const QString &folder, qint64 sizeLimit,
                               JobProgress *progress, const std::stop_token &stop)
{
    constexpr qint64 quickToList = 1 << 20;
    std::optional<qint64> sum;
    std::optional<Check> meanwhile;
    if (source.engine.isCareful() && ToolProcess::canConfine() &&
        QFileInfo(source.archive).size() > quickToList)
        meanwhile.emplace(source, sizeLimit);
    else
        sum = check(source, sizeLimit, stop);
    const ProcessResult result = ToolProcess::run(
        source.engine.extraction(source.archive, folder, source.password), stop,
        [&](const ToolProcess &) {
            guardSize(folder, sizeLimit, meanwhile ? meanwhile->poll() : sum, progress);
        });
    // These reasons say more than a failure's own words.
    if (meanwhile)
        meanwhile->wait(stop);
    const ExtractedTree::Contents contents = ExtractedTree::makeOrdinary(folder);
    if (contents.size > sizeLimit)
        throw ArchiveError(ArchiveError::TooLarge{sizeLimit});
    requireSpace(result, source.archive);
    source.succeed(result);
    return contents;
}

/// 7-Zip takes a compressed tar for an archive of one file, the tar.
bool isWrappedTar(const Source &source, const Listing &listing)
{
    constexpr std::array containers = {".zip", ".7z", ".rar"};
    return listing.entries.size() == 1 && listing.entries[0].path.endsWith(u".tar") &&
           std::ranges::none_of(containers, [&](const char *ending) {
               return source.archive.endsWith(QLatin1String(ending), Qt::CaseInsensitive);
           });
}

/// The archive itself, or the tar in it, unpacked beneath `folder`.
Source unwrapped(Source source, const PrivateFolder &folder, qint64 sizeLimit,
                 JobProgress *progress, const std::stop_token &stop)
{
    constexpr qint64 headers = 256 << 20; // and padding, which the contents are without
    if (source.engine.kind() == ArchiveEngine::Kind::bsdtar ||
        !isWrappedTar(source, source.listing(stop)))
        return source;
    const QString wrapped = folder.makeFolder(QStringLiteral("tar"));
    const bool isNearMaximum = sizeLimit > std::numeric_limits<qint64>::max() - headers;
    unpack(source, wrapped, isNearMaximum ? sizeLimit : sizeLimit + headers, progress, stop);
    const QFileInfoList files = QDir(wrapped).entryInfoList(QDir::Files | QDir::NoSymLinks);
    if (files.size() != 1)
        throw ArchiveError(ArchiveError::Failed{});
    return {source.engine, files.first().absoluteFilePath(), std::nullopt};
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
    const PrivateFolder folder(QStringLiteral("Orvane-extract"));
    const QString content = folder.makeFolder(QStringLiteral("content"));
    Source source = unwrapped({engine, archive.absoluteFilePath(), request.password}, folder,
                              sizeLimit, &progress, stop);
    const bool hasLinks = unpack(source, content, sizeLimit, &progress, stop).hasLinks;
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

QString zipName(const std::vector<QUrl> &urls, const std::optional<QString> &name)
{
    if (!name && urls.size() != 1)
        return QStringLiteral("Arquivos.zip");
    if (!name) {
        const QString own = QFileInfo(QDir::cleanPath(urls[0].toLocalFile())).fileName();
        const qsizetype dot = own.lastIndexOf(u'.');
        return (dot > 0 ? own.left(dot) : own) + QStringLiteral(".zip");
    }
    if (!FileNaming::isValid(*name + QStringLiteral(".zip")))
        throw ArchiveError(
            ArchiveError::Failed{QStringLiteral("O nome “%1” não pode ser usado.").arg(*name)});
    return *name + QStringLiteral(".zip");
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

QUrl zipBy(const ArchiveEngine &engine, const std::vector<QUrl> &urls, const QUrl &target,
           JobProgress &progress, const std::stop_token &stop)
{
    const PrivateFolder folder(QStringLiteral("Orvane-zip"));
    const QString archive = folder.path(QStringLiteral("archive.zip"));
    const QStringList items = distinct(urls, folder, stop);
    for (const ToolCommand &command : engine.compression(archive, items)) {
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
        const PrivateFolder folder(QStringLiteral("Orvane-extract"));
        return unwrapped({engine, path, request.password}, folder, defaultSizeLimit, nullptr, stop)
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
    if (urls.empty())
        throw ArchiveError(ArchiveError::Failed{QStringLiteral("Não há nada para comprimir.")});
    for (const QUrl &url : urls)
        requireFile(url);
    const QString file = zipName(urls, name);
    const QString folder =
        destination ? destination->toLocalFile() : QFileInfo(urls[0].toLocalFile()).absolutePath();
    const QUrl target = QUrl::fromLocalFile(folder + u'/' + file);
    const std::vector<ArchiveEngine> choice = engines ? *engines : ArchiveEngine::allThatMake();
    if (choice.empty())
        throw noEngine();
    const QUrl made = zipBy(choice.front(), urls, target, progress, stop);
    progress.update(1.0, std::nullopt, true);
    return made;
}

} // namespace velmo
