#include "VelmoCore/Files/TreeCopier.h"

#include "VelmoCore/Files/NativeFiles.h"

#include <algorithm>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <sys/xattr.h>

namespace velmo {

using namespace NativeFiles;

namespace {

namespace fs = std::filesystem;

constexpr std::size_t chunk = 4 << 20;

bool isSame(const struct stat &one, const struct stat &other)
{
    return one.st_mode == other.st_mode && one.st_size == other.st_size &&
           one.st_mtim.tv_sec == other.st_mtim.tv_sec &&
           one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
}

void writeAll(int target, std::string_view bytes, const std::string &from)
{
    while (!bytes.empty()) {
        const ssize_t count = retried([&] { return ::write(target, bytes.data(), bytes.size()); });
        orFail(int(std::min<ssize_t>(count, 0)), from);
        bytes.remove_prefix(std::size_t(count));
    }
}

std::vector<std::string> names(const std::string &folder)
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

void copyLink(const std::string &from, const std::string &to, const struct stat &entry)
{
    std::string target(std::size_t(entry.st_size) + 1, '\0');
    const ssize_t size = ::readlink(from.c_str(), target.data(), target.size());
    orFail(int(std::min<ssize_t>(size, 0)), from);
    target.resize(std::size_t(size));
    orFail(::symlink(target.c_str(), to.c_str()), from);
    const timespec times[] = {entry.st_atim, entry.st_mtim};
    ::utimensat(AT_FDCWD, to.c_str(), times, AT_SYMLINK_NOFOLLOW); // not every file system can
}

/// What the target can't hold stays behind.
void copyAttributes(int source, int target)
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

/// Mode, extended attributes and times, the last ones last.
void copyFacts(int source, int target, const struct stat &entry, const std::string &from)
{
    copyAttributes(source, target);
    orFail(::fchmod(target, entry.st_mode & 07777), from);
    const timespec times[] = {entry.st_atim, entry.st_mtim};
    orFail(::futimens(target, times), from);
}

} // namespace

TreeCopier::TreeCopier(bool isSafe, std::stop_token stop, const Progress &progress)
    : m_isSafe(isSafe), m_stop(std::move(stop)), m_progress(progress)
{
}

void TreeCopier::copy(const std::string &from, const std::string &to)
{
    if (m_progress)
        m_wanted = std::max<std::uintmax_t>(bytesOf(from), 1) * (m_isSafe ? 2 : 1);
    m_root = from.size();
    copyEntry(from, to);
}

bool TreeCopier::isUnchanged(const std::string &root) const
{
    return !hasMore(root) && std::ranges::all_of(m_entries, [&](const Entry &entry) {
        struct stat now = {};
        return ::lstat((root + entry.place).c_str(), &now) == 0 && isSame(now, entry.facts);
    });
}

/// Times alone don't show what came right after the copy on every kernel.
bool TreeCopier::hasMore(const std::string &root) const
{
    if (!S_ISDIR(m_entries.front().facts.st_mode))
        return false;
    std::error_code error;
    std::size_t count = 1;
    for (auto entry = fs::recursive_directory_iterator(root, error);
         !error && entry != fs::recursive_directory_iterator(); entry.increment(error))
        ++count;
    return error || count > m_entries.size();
}

void TreeCopier::copyEntry(const std::string &from, const std::string &to)
{
    heed(m_stop);
    const struct stat entry = stated(from);
    m_entries.push_back({from.substr(m_root), entry});
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
std::uintmax_t TreeCopier::bytesOf(const std::string &path) const
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

void TreeCopier::advance(ssize_t count)
{
    if (!m_progress)
        return;
    m_done += std::uintmax_t(count);
    m_progress(std::min(1.0, double(m_done) / double(m_wanted)));
}

void TreeCopier::copyFile(const std::string &from, const std::string &to)
{
    const Descriptor source(::open(from.c_str(), O_RDONLY | O_NOFOLLOW | O_CLOEXEC), shown(from));
    const Descriptor target(
        ::open(to.c_str(), O_RDWR | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600), shown(from));
    struct stat before = {};
    orFail(::fstat(source, &before), from);
    copyContent(source, target, from);
    const bool isCopied = !m_isSafe || isWhole(source, target, from);
    struct stat after = {};
    orFail(::fstat(source, &after), from);
    if (!isSame(before, after))
        fail(from, EBUSY); // somebody is writing it
    if (!isCopied)
        fail(from, EIO);
    copyFacts(source, target, before, from);
    if (m_isSafe)
        sync(target, from);
}

void TreeCopier::copyContent(int source, int target, const std::string &from)
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
                fail(from);
            isInKernel = false; // some file systems say 0 of what isn't empty
            buffer = std::make_unique_for_overwrite<char[]>(chunk);
        }
        const ssize_t count = retried([&] { return ::read(source, buffer.get(), chunk); });
        orFail(int(std::min<ssize_t>(count, 0)), from);
        if (count == 0)
            return;
        writeAll(target, {buffer.get(), std::size_t(count)}, from);
        advance(count);
    }
}

bool TreeCopier::isWhole(int source, int target, const std::string &from)
{
    std::vector<char> wanted(chunk);
    std::vector<char> found(chunk);
    for (off_t at = 0;;) {
        heed(m_stop);
        const ssize_t count = retried([&] { return ::pread(source, wanted.data(), chunk, at); });
        const ssize_t same = retried([&] { return ::pread(target, found.data(), chunk, at); });
        if (count < 0 || same < 0)
            fail(from);
        if (count != same || !std::equal(wanted.begin(), wanted.begin() + count, found.begin()))
            return false;
        if (count == 0)
            return true;
        at += count;
        advance(count);
    }
}

void TreeCopier::copyFolder(const std::string &from, const std::string &to)
{
    const Descriptor source(::open(from.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC),
                            shown(from));
    orFail(::mkdir(to.c_str(), 0700), from);
    for (const std::string &name : names(from))
        copyEntry(fs::path(from) / name, fs::path(to) / name);
    const Descriptor target(::open(to.c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC),
                            shown(from));
    struct stat entry = {};
    orFail(::fstat(source, &entry), from);
    copyFacts(source, target, entry, from);
    if (m_isSafe)
        sync(target, from);
}

} // namespace velmo
