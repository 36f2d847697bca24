#include "VelmoCore/Files/FileTransfer.h"

#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Files/NativeFiles.h"
#include "VelmoCore/Files/TreeCopier.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Uuid.h"

#include <fcntl.h>
#include <filesystem>

namespace velmo {

using namespace NativeFiles;

namespace {

namespace fs = std::filesystem;

constexpr int mostAttempts = 1000;

std::string native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
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
    if (::unlink(from.c_str()) == 0)
        return 0;
    const int code = errno;
    ::unlink(to.c_str());
    errno = code;
    return -1;
}

/// 0, or -1 with errno; EEXIST where something stands at `to`.
int renameWithoutReplacing(const std::string &from, const std::string &to)
{
    const int result = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
    if (result < 0 && (errno == EINVAL || errno == ENOSYS))
        return renameByTwoSteps(from, to);
    return result;
}

/// Folders that nobody may write to keep their files otherwise.
void makeFoldersWritable(const fs::path &path)
{
    std::error_code error;
    const auto open = [&](const fs::path &folder) {
        fs::permissions(folder, fs::perms::owner_all, fs::perm_options::add, error);
    };
    if (!fs::is_directory(fs::symlink_status(path, error)))
        return;
    open(path);
    for (auto entry = fs::recursive_directory_iterator(path, error);
         !error && entry != fs::recursive_directory_iterator(); entry.increment(error)) {
        if (entry->is_directory(error) && !entry->is_symlink(error))
            open(entry->path());
    }
}

/// Removes what isn't to stay; a failure leaves a hidden file and a line in the log.
void discard(const std::string &path)
{
    std::error_code error;
    fs::remove_all(path, error);
    if (error) {
        makeFoldersWritable(path);
        fs::remove_all(path, error);
    }
    if (error)
        qCWarning(Log::storage).noquote()
            << QStringLiteral("Não foi possível remover %1: %2")
                   .arg(shown(path), QString::fromStdString(error.message()));
}

std::string hiddenBeside(const std::string &path)
{
    return fs::path(path).parent_path() / (".orvane-" + uuidText(makeUuid()).toStdString());
}

void syncFolderOf(const std::string &path)
{
    const std::string folder = fs::path(path).parent_path();
    sync(Descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC), shown(folder)),
         folder);
}

/// What keeps something from coming to be at `to` is the folder's fault, if it has one.
void checkFolderOf(const std::string &to)
{
    const std::string folder = fs::path(to).parent_path();
    orFail(::eaccess(folder.c_str(), W_OK | X_OK), folder);
}

/// Copies beside the target under a hidden name, and gives it its name when it is whole.
void copyTo(const std::string &from, const std::string &to, TreeCopier &copier)
{
    checkFolderOf(to);
    struct stat entry = {};
    if (::lstat(to.c_str(), &entry) == 0)
        fail(to, EEXIST);
    if (errno != ENOENT)
        fail(to);
    const std::string temporary = hiddenBeside(to);
    try {
        copier.copy(from, temporary);
        orFail(renameWithoutReplacing(temporary, to), to);
    } catch (const LocalizedError &) {
        discard(temporary);
        throw;
    }
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

/// Nothing of an original that is gone.
QString staysAt(const std::string &path)
{
    struct stat entry = {};
    if (::lstat(path.c_str(), &entry) < 0 && (errno == ENOENT || errno == ENOTDIR))
        return {};
    return QStringLiteral("O original está em “%1”.").arg(shown(path));
}

/// Takes a copy back that has its name already. Says where it is if that can't be.
QString takenBack(const std::string &copy)
{
    const std::string temporary = hiddenBeside(copy);
    if (renameWithoutReplacing(copy, temporary) < 0)
        return errno == ENOENT ? QString()
                               : QStringLiteral("Uma cópia ficou em “%1”. ").arg(shown(copy));
    discard(temporary);
    return {};
}

/// Gives the original its name again, or one close to it, or none. Gives its path.
std::string givenBack(const std::string &aside, const std::string &from)
{
    std::string place = aside;
    try {
        uniquely(QUrl::fromLocalFile(shown(from)), [&](const QString &free) {
            orFail(renameWithoutReplacing(aside, native(free)), from);
            place = native(free);
        });
    } catch (const FileError &error) {
        qCWarning(Log::storage).noquote() << error.description();
    }
    return place;
}

/// Takes the original away now that its copy is whole: at once under another name, so that it is
/// never half there. What was written to it meanwhile brings it back.
void replaceByCopy(const std::string &from, const std::string &copy, const TreeCopier &copier)
{
    const std::string aside = hiddenBeside(from);
    try {
        syncFolderOf(copy);
        orFail(renameWithoutReplacing(from, aside), from);
    } catch (const FileError &error) {
        const QString left = takenBack(copy);
        throw FileError(error, left + staysAt(from));
    }
    if (copier.isUnchanged(aside) && stands(copy)) {
        discard(aside);
        return;
    }
    const std::string place = givenBack(aside, from);
    const QString left = takenBack(copy);
    throw FileError(FileError(shown(from), EBUSY), left + staysAt(place));
}

/// False, and nothing has happened, where `to` is on another file system.
bool renamed(const std::string &from, const std::string &to)
{
    stated(from);
    if (renameWithoutReplacing(from, to) == 0)
        return true;
    const int code = errno;
    if (code == EXDEV)
        return false;
    if (code != EEXIST && code != ENAMETOOLONG)
        checkFolderOf(to);
    fail(code == EEXIST || code == ENAMETOOLONG ? to : from, code);
}

/// A failure says where the original is.
template <class Transfer>
auto orStaying(const std::string &from, const Transfer &transfer)
{
    try {
        return transfer();
    } catch (const FileError &error) {
        throw FileError(error, staysAt(from));
    }
}

void moveTo(const QString &from, const QString &to, const std::stop_token &stop,
            const FileTransfer::Progress &progress)
{
    const std::string source = trimmed(from);
    const std::string target = trimmed(to);
    TreeCopier copier(true, stop, progress);
    heed(stop);
    const bool isRenamed = orStaying(source, [&] {
        const bool wasEnough = renamed(source, target);
        if (!wasEnough)
            copyTo(source, target, copier);
        return wasEnough;
    });
    if (!isRenamed)
        replaceByCopy(source, target, copier);
}

void copyFrom(const QString &from, const QString &to, const std::stop_token &stop,
              const FileTransfer::Progress &progress)
{
    TreeCopier copier(false, stop, progress);
    copyTo(trimmed(from), trimmed(to), copier);
}

} // namespace

void FileTransfer::move(const QString &from, const QString &to, const std::stop_token &stop)
{
    moveTo(from, to, stop, {});
}

void FileTransfer::copy(const QString &from, const QString &to, const std::stop_token &stop)
{
    copyFrom(from, to, stop, {});
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
    return uniquely(
        to, [&](const QString &target) { copyFrom(from.toLocalFile(), target, stop, progress); });
}

std::optional<QUrl> FileTransfer::renameUnique(const QUrl &from, const QUrl &to)
{
    bool isRenamed = false;
    const QUrl target = uniquely(to, [&](const QString &free) {
        const std::string source = trimmed(from.toLocalFile());
        isRenamed = orStaying(source, [&] { return renamed(source, trimmed(free)); });
    });
    return isRenamed ? std::optional(target) : std::nullopt;
}

} // namespace velmo
