#include "VelmoCore/Storage/AtomicFile.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Storage/Descriptor.h"
#include "VelmoCore/Storage/FileReasons.h"

#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/file.h>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>

namespace velmo {
namespace {

namespace fs = std::filesystem;

constexpr qint64 readStep = 65'536;
constexpr int longestLinkChain = 40;
/// Leaves room for the rest of a temporary name within the 255 bytes of a file name.
constexpr qsizetype longestNamePart = 200;

QString nameOf(const QString &path)
{
    const QString name = QFileInfo(path).fileName();
    return name.isEmpty() ? path : name;
}

QString folderOf(const QString &path)
{
    return QFileInfo(path).path();
}

/// Unlinks a temporary file that was not renamed.
struct TemporaryName {
    QByteArray path;
    bool isMoved = false;

    ~TemporaryName()
    {
        if (!isMoved)
            ::unlink(path.constData());
    }
};

Descriptor opened(const QString &path, int flags)
{
    const QByteArray native = QFile::encodeName(path);
    return {retried([&] { return ::open(native.constData(), flags | O_CLOEXEC); }), path};
}

/// Some file systems don't sync a folder and say so with EINVAL.
void syncFolder(int folder, const QString &path)
{
    if (retried([&] { return ::fsync(folder); }) < 0 && errno != EINVAL)
        throw FileError(path, errno);
}

QString withLinksFollowed(const QString &path)
{
    fs::path target(QFile::encodeName(path).toStdString());
    std::error_code error;
    for (int hop = 0; fs::is_symlink(target, error); ++hop) {
        if (hop == longestLinkChain)
            throw FileError(path, ELOOP);
        const fs::path next = fs::read_symlink(target, error);
        if (error)
            throw FileError(path, error.value());
        target = target.parent_path() / next;
    }
    return QFile::decodeName(target.c_str());
}

/// The name of a temporary file for `target`, but for the six characters that make it unique.
QByteArray temporaryPrefix(const QString &target)
{
    return "." + QFile::encodeName(nameOf(target)).left(longestNamePart) + ".orvane-";
}

/// Gives 0 or an errno value, EEXIST where something stands at `to`.
int moveWithoutReplacing(const QByteArray &from, const QByteArray &to)
{
    if (::renameat2(AT_FDCWD, from.constData(), AT_FDCWD, to.constData(), RENAME_NOREPLACE) == 0)
        return 0;
    if (errno != EINVAL && errno != ENOSYS)
        return errno;
    // A file system without this flag: a hard link never replaces either.
    if (::link(from.constData(), to.constData()) != 0 || ::unlink(from.constData()) != 0)
        return errno;
    return 0;
}

void writeAll(int file, const QByteArray &data, const QString &path)
{
    for (qsizetype done = 0; done < data.size();) {
        const auto count = retried([&] {
            return ::write(file, data.constData() + done, static_cast<size_t>(data.size() - done));
        });
        if (count < 0)
            throw FileError(path, errno);
        done += count;
    }
    if (retried([&] { return ::fsync(file); }) < 0)
        throw FileError(path, errno);
}

/// Moves a finished, synced file to `target` by `move`, which gives 0 or an errno value.
template <class Move>
int place(const QByteArray &data, const QString &target, Move move)
{
    const QString folder = folderOf(target);
    AtomicFile::makeDirectory(folder);
    const Descriptor directory = opened(folder, O_RDONLY | O_DIRECTORY);
    TemporaryName name{QFile::encodeName(folder + u'/') + temporaryPrefix(target) + "XXXXXX"};
    const int descriptor = ::mkostemp(name.path.data(), O_CLOEXEC);
    if (descriptor < 0) {
        name.isMoved = true;
        throw FileError(target, errno);
    }
    const Descriptor file(descriptor, target);
    // The lock goes with the process: `removeStrays` of another one knows by it what is in use.
    ::flock(file, LOCK_EX | LOCK_NB);
    writeAll(file, data, target);
    const int code = move(name.path, QFile::encodeName(target));
    name.isMoved = code == 0;
    if (code == 0)
        syncFolder(directory, folder);
    return code;
}

} // namespace

FileError::FileError(const QString &path, int code)
    : LocalizedError(
          QStringLiteral("Falha em “%1”: %2.").arg(nameOf(path), FileReasons::text(code))),
      m_code(code)
{
}

FileError::FileError(const FileError &cause, const QString &consequence)
    : LocalizedError((cause.description() + u' ' + consequence).trimmed()), m_code(cause.code())
{
}

void AtomicFile::write(const QByteArray &data, const QString &path)
{
    const int code = place(data, withLinksFollowed(path), [](const auto &from, const auto &to) {
        return ::rename(from.constData(), to.constData()) == 0 ? 0 : errno;
    });
    if (code != 0)
        throw FileError(path, code);
}

bool AtomicFile::create(const QByteArray &data, const QString &path)
{
    const int code = place(data, path, moveWithoutReplacing);
    if (code != 0 && code != EEXIST)
        throw FileError(path, code);
    return code == 0;
}

QByteArray AtomicFile::read(const QString &path, qint64 limit)
{
    // A pipe in the file's place must not hold us up.
    const Descriptor file = opened(path, O_RDONLY | O_NONBLOCK);
    struct stat status = {};
    if (::fstat(file, &status) < 0)
        throw FileError(path, errno);
    // One byte more than the file has, so that its end shows without another allocation.
    QByteArray data(std::min(limit, qint64{status.st_size} + 1), Qt::Uninitialized);
    qsizetype done = 0;
    while (done < limit) {
        if (done == data.size())
            data.resize(std::min(limit, done + readStep));
        const auto count = retried([&] {
            return ::read(file, data.data() + done, static_cast<size_t>(data.size() - done));
        });
        if (count < 0)
            throw FileError(path, errno);
        if (count == 0)
            break;
        done += count;
    }
    data.resize(done);
    return data;
}

std::optional<QString> AtomicFile::quarantine(const QString &path, Date now)
{
    const QString name = nameOf(path);
    const auto dot = name.lastIndexOf(u'.');
    const bool hasExtension = dot > 0 && dot + 1 < name.size();
    const auto seconds = std::chrono::duration_cast<std::chrono::seconds>(now.time_since_epoch());
    const QString moved =
        QStringLiteral("%1/%2.corrupt-%3%4")
            .arg(folderOf(path), hasExtension ? name.left(dot) : name,
                 QString::number(seconds.count()), hasExtension ? name.mid(dot) : QString());
    const int code = moveWithoutReplacing(QFile::encodeName(path), QFile::encodeName(moved));
    if (code == 0)
        return moved;
    qCWarning(Log::storage).noquote()
        << QStringLiteral("Não foi possível isolar arquivo corrompido: %1")
               .arg(FileError(moved, code).description());
    return std::nullopt;
}

void AtomicFile::removeStrays(const QString &path)
{
    const QString target = withLinksFollowed(path);
    const std::string prefix = temporaryPrefix(target).toStdString();
    std::error_code error;
    std::vector<std::string> strays;
    fs::directory_iterator entry(QFile::encodeName(folderOf(target)).toStdString(), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
        const std::string name = entry->path().filename();
        if (name.starts_with(prefix) && name.size() == prefix.size() + 6)
            strays.push_back(entry->path());
    }
    for (const std::string &stray : strays) {
        const int file = ::open(stray.c_str(), O_RDONLY | O_NONBLOCK | O_NOFOLLOW | O_CLOEXEC);
        if (file >= 0 && ::flock(file, LOCK_EX | LOCK_NB) == 0)
            ::unlink(stray.c_str());
        if (file >= 0)
            ::close(file);
    }
}

void AtomicFile::makeDirectory(const QString &path)
{
    if (QFileInfo(path).isDir())
        return;
    const QString parent = folderOf(path);
    if (parent != path)
        makeDirectory(parent);
    if (::mkdir(QFile::encodeName(path).constData(), 0700) == 0)
        return syncFolder(opened(parent, O_RDONLY | O_DIRECTORY), parent);
    const int code = errno;
    if (!QFileInfo(path).isDir())
        throw FileError(path, code == EEXIST ? ENOTDIR : code);
}

} // namespace velmo
