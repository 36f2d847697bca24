#include "VelmoCore/Files/FileTransfer.h"

#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Uuid.h"
#include "VelmoCore/Storage/Descriptor.h"

#include <QFile>

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <vector>

namespace velmo {

namespace {

namespace fs = std::filesystem;

constexpr std::size_t chunk = 4 << 20;
constexpr int mostAttempts = 1000;

std::string native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

/// A path of the copy, for the user; names that aren't text lose something.
QString shown(const std::string &path)
{
    return QFile::decodeName(path.c_str());
}

[[noreturn]] void fail(const std::string &path, int code = errno)
{
    throw FileError(shown(path), code);
}

void orFail(int result, const std::string &path)
{
    if (result < 0)
        fail(path);
}

void heed(const std::stop_token &stop)
{
    if (stop.stop_requested())
        throw Cancelled();
}

struct stat stated(const std::string &path)
{
    struct stat entry = {};
    orFail(::lstat(path.c_str(), &entry), path);
    return entry;
}

bool stands(const std::string &path)
{
    struct stat entry = {};
    return ::lstat(path.c_str(), &entry) == 0;
}

/// For file systems that can't rename without replacing: files get a second name first, which is as
/// safe; for folders an empty one in the very last moment is all that could be lost.
int renameByTwoSteps(const std::string &from, const std::string &to)
{
    if (stands(to)) {
        errno = EEXIST;
        return -1;
    }
    if (S_ISDIR(stated(from).st_mode))
        return ::rename(from.c_str(), to.c_str());
    if (::link(from.c_str(), to.c_str()) < 0)
        return errno == EPERM || errno == EOPNOTSUPP ? ::rename(from.c_str(), to.c_str()) : -1;
    return ::unlink(from.c_str());
}

/// 0, or -1 with errno; EEXIST where something stands at `to`.
int renameWithoutReplacing(const std::string &from, const std::string &to)
{
    const int result = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
    if (result < 0 && (errno == EINVAL || errno == ENOSYS))
        return renameByTwoSteps(from, to);
    return result;
}

/// Removes what isn't to stay; a failure leaves a hidden file and a line in the log.
void discard(const std::string &path)
{
    std::error_code error;
    fs::remove_all(path, error);
    if (error)
        qCWarning(Log::storage).noquote()
            << QStringLiteral("Não foi possível remover %1: %2")
                   .arg(shown(path), QString::fromStdString(error.message()));
}

/// Copies a tree of files, folders and links.
class Copier {
public:
    /// A safe copy is synced and read back before anyone relies on it.
    Copier(bool isSafe, std::stop_token stop, const FileTransfer::Progress &progress)
        : m_isSafe(isSafe), m_stop(std::move(stop)), m_progress(progress)
    {
    }

    /// Says how much there is to copy before it begins.
    void copyAll(const std::string &from, const std::string &to)
    {
        if (m_progress)
            m_wanted = std::max<std::uintmax_t>(bytesOf(from), 1) * (m_isSafe ? 2 : 1);
        copy(from, to);
    }

private:
    void copy(const std::string &from, const std::string &to)
    {
        heed(m_stop);
        const struct stat entry = stated(from);
        if (S_ISREG(entry.st_mode))
            copyFile(from, to);
        else if (S_ISDIR(entry.st_mode))
            copyFolder(from, to);
        else if (S_ISLNK(entry.st_mode))
            copyLink(from, to, entry);
        else
            fail(from, EOPNOTSUPP);
    }

    /// Of all files in a tree; what can't be read counts nothing and fails when it is copied.
    std::uintmax_t bytesOf(const std::string &path) const
    {
        std::error_code error;
        if (fs::is_regular_file(fs::symlink_status(path, error)))
            return fs::file_size(path, error);
        std::uintmax_t sum = 0;
        if (!fs::is_directory(fs::symlink_status(path, error)))
            return sum;
        for (auto entry = fs::recursive_directory_iterator(path, error);
             !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
            heed(m_stop);
            std::error_code unread;
            if (fs::is_regular_file(entry->symlink_status(unread)))
                sum += fs::file_size(entry->path(), unread);
        }
        return sum;
    }

    void advance(ssize_t count)
    {
        if (!m_progress)
            return;
        m_done += std::uintmax_t(count);
        m_progress(std::min(1.0, double(m_done) / double(m_wanted)));
    }

    void copyFile(const std::string &from, const std::string &to)
    {
        const Descriptor source(::open(from.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC),
                                shown(from));
        const Descriptor target(
            ::open(to.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600),
            shown(to));
        struct stat before = {};
        orFail(::fstat(source, &before), from);
        copyContent(source, target, from, to);
        if (m_isSafe)
            compare(source, target, to);
        struct stat after = {};
        orFail(::fstat(source, &after), from);
        if (before.st_size != after.st_size || before.st_mtim.tv_sec != after.st_mtim.tv_sec ||
            before.st_mtim.tv_nsec != after.st_mtim.tv_nsec)
            fail(from, EBUSY); // somebody is writing it
        copyFacts(source, target, before, to);
        if (m_isSafe)
            orFail(retried([&] { return ::fsync(target); }), to);
    }

    void copyContent(int source, int target, const std::string &from, const std::string &to)
    {
        bool isInKernel = true;
        std::unique_ptr<char[]> buffer;
        for (;;) {
            heed(m_stop);
            if (isInKernel) {
                const ssize_t count = retried(
                    [&] { return ::copy_file_range(source, nullptr, target, nullptr, chunk, 0); });
                if (count > 0) {
                    advance(count);
                    continue;
                }
                if (count < 0 && errno != EXDEV && errno != EINVAL && errno != ENOSYS &&
                    errno != EOPNOTSUPP)
                    fail(to);
                isInKernel = false; // some file systems say 0 of what isn't empty
                buffer = std::make_unique_for_overwrite<char[]>(chunk);
            }
            const ssize_t count = retried([&] { return ::read(source, buffer.get(), chunk); });
            orFail(int(std::min<ssize_t>(count, 0)), from);
            if (count == 0)
                return;
            writeAll(target, {buffer.get(), std::size_t(count)}, to);
            advance(count);
        }
    }

    static void writeAll(int target, std::string_view bytes, const std::string &to)
    {
        while (!bytes.empty()) {
            const ssize_t count =
                retried([&] { return ::write(target, bytes.data(), bytes.size()); });
            orFail(int(std::min<ssize_t>(count, 0)), to);
            bytes.remove_prefix(std::size_t(count));
        }
    }

    void compare(int source, int target, const std::string &to)
    {
        std::vector<char> wanted(chunk);
        std::vector<char> found(chunk);
        for (off_t at = 0;;) {
            heed(m_stop);
            const ssize_t count =
                retried([&] { return ::pread(source, wanted.data(), chunk, at); });
            const ssize_t same = retried([&] { return ::pread(target, found.data(), chunk, at); });
            if (count < 0 || count != same ||
                !std::equal(wanted.begin(), wanted.begin() + count, found.begin()))
                fail(to, EIO);
            if (count == 0)
                return;
            at += count;
            advance(count);
        }
    }

    void copyFolder(const std::string &from, const std::string &to)
    {
        const Descriptor source(
            ::open(from.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC), shown(from));
        orFail(::mkdir(to.c_str(), 0700), to);
        for (const std::string &name : names(from))
            copy(fs::path(from) / name, fs::path(to) / name);
        const Descriptor target(::open(to.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC),
                                shown(to));
        struct stat entry = {};
        orFail(::fstat(source, &entry), from);
        copyFacts(source, target, entry, to);
    }

    static std::vector<std::string> names(const std::string &folder)
    {
        const std::unique_ptr<DIR, int (*)(DIR *)> listing(::opendir(folder.c_str()), ::closedir);
        if (!listing)
            fail(folder);
        std::vector<std::string> found;
        for (errno = 0; const dirent *entry = ::readdir(listing.get()); errno = 0) {
            const std::string name = entry->d_name;
            if (name != "." && name != "..")
                found.push_back(name);
        }
        if (errno != 0)
            fail(folder);
        return found;
    }

    static void copyLink(const std::string &from, const std::string &to, const struct stat &entry)
    {
        std::string target(std::size_t(entry.st_size) + 1, '\0');
        const ssize_t size = ::readlink(from.c_str(), target.data(), target.size());
        orFail(int(std::min<ssize_t>(size, 0)), from);
        target.resize(std::size_t(size));
        orFail(::symlink(target.c_str(), to.c_str()), to);
        const timespec times[] = {entry.st_atim, entry.st_mtim};
        ::utimensat(AT_FDCWD, to.c_str(), times, AT_SYMLINK_NOFOLLOW); // not every file system can
    }

    /// Mode, extended attributes and times, the last ones last.
    static void copyFacts(int source, int target, const struct stat &entry, const std::string &to)
    {
        copyAttributes(source, target);
        orFail(::fchmod(target, entry.st_mode & 07777), to);
        const timespec times[] = {entry.st_atim, entry.st_mtim};
        orFail(::futimens(target, times), to);
    }

    /// What the target can't hold stays behind.
    static void copyAttributes(int source, int target)
    {
        const ssize_t size = ::flistxattr(source, nullptr, 0);
        std::string names(std::size_t(std::max<ssize_t>(size, 0)), '\0');
        if (size <= 0 || ::flistxattr(source, names.data(), names.size()) != size)
            return;
        for (std::size_t at = 0; at < names.size(); at += std::string_view(&names[at]).size() + 1) {
            const char *name = &names[at];
            const ssize_t length = ::fgetxattr(source, name, nullptr, 0);
            std::string value(std::size_t(std::max<ssize_t>(length, 0)), '\0');
            if (length >= 0 && ::fgetxattr(source, name, value.data(), value.size()) == length)
                ::fsetxattr(target, name, value.data(), value.size(), 0);
        }
    }

    bool m_isSafe;
    std::stop_token m_stop;
    const FileTransfer::Progress &m_progress;
    std::uintmax_t m_wanted = 1; ///< bytes, those that are read back counted again
    std::uintmax_t m_done = 0;
};

/// Copies beside the target under a hidden name, and gives it its name when it is whole.
void copyTo(const std::string &from, const std::string &to, bool isSafe,
            const std::stop_token &stop, const FileTransfer::Progress &progress)
{
    if (stands(to))
        fail(to, EEXIST);
    const std::string temporary =
        fs::path(to).parent_path() / (".orvane-" + uuidText(makeUuid()).toStdString());
    try {
        Copier(isSafe, stop, progress).copyAll(from, temporary);
        orFail(renameWithoutReplacing(temporary, to), to);
    } catch (const LocalizedError &) {
        if (stands(temporary))
            discard(temporary);
        throw;
    }
}

/// Takes the original away now that its copy is whole: at once under another name, so that it is
/// never half there.
void removeOriginal(const std::string &from, const std::string &copy)
{
    const std::string aside =
        fs::path(from).parent_path() / (".orvane-" + uuidText(makeUuid()).toStdString());
    if (renameWithoutReplacing(from, aside) < 0) {
        const int code = errno;
        discard(copy);
        fail(from, code);
    }
    discard(aside);
}

std::string trimmed(const QString &path)
{
    std::string bytes = native(path);
    while (bytes.size() > 1 && bytes.back() == '/')
        bytes.pop_back();
    return bytes;
}

QUrl uniquely(const QUrl &to, const std::function<void(const QString &)> &transfer)
{
    for (int attempt = 0;; ++attempt) {
        QUrl target = FileNaming::uniqueURL(to);
        try {
            transfer(target.toLocalFile());
            return target;
        } catch (const FileError &error) {
            if (error.code() != EEXIST || attempt == mostAttempts)
                throw;
        }
    }
}

/// False, and nothing has happened, where `to` is on another file system.
bool renamed(const std::string &from, const std::string &to)
{
    stated(from);
    if (renameWithoutReplacing(from, to) == 0)
        return true;
    if (errno != EXDEV)
        fail(errno == ENOENT || errno == EEXIST ? to : from);
    return false;
}

void moveTo(const QString &from, const QString &to, const std::stop_token &stop,
            const FileTransfer::Progress &progress)
{
    const std::string source = trimmed(from);
    const std::string target = trimmed(to);
    heed(stop);
    if (renamed(source, target))
        return;
    copyTo(source, target, true, stop, progress);
    removeOriginal(source, target);
}

} // namespace

void FileTransfer::move(const QString &from, const QString &to, const std::stop_token &stop)
{
    moveTo(from, to, stop, {});
}

void FileTransfer::copy(const QString &from, const QString &to, const std::stop_token &stop)
{
    copyTo(trimmed(from), trimmed(to), false, stop, {});
}

QUrl FileTransfer::moveUnique(const QUrl &from, const QUrl &to, const std::stop_token &stop,
                              const Progress &progress)
{
    return uniquely(
        to, [&](const QString &target) { moveTo(from.toLocalFile(), target, stop, progress); });
}

QUrl FileTransfer::copyUnique(const QUrl &from, const QUrl &to, const std::stop_token &stop,
                              const Progress &progress)
{
    return uniquely(to, [&](const QString &target) {
        copyTo(trimmed(from.toLocalFile()), trimmed(target), false, stop, progress);
    });
}

std::optional<QUrl> FileTransfer::renameUnique(const QUrl &from, const QUrl &to)
{
    bool isRenamed = false;
    const QUrl target = uniquely(to, [&](const QString &free) {
        isRenamed = renamed(trimmed(from.toLocalFile()), trimmed(free));
    });
    return isRenamed ? std::optional(target) : std::nullopt;
}

} // namespace velmo
