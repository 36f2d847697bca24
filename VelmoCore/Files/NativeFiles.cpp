#include "VelmoCore/Files/NativeFiles.h"

#include "VelmoCore/Foundation/Log.h"

#include <cstdio>
#include <fcntl.h>
#include <filesystem>

namespace velmo::NativeFiles {

namespace {

namespace fs = std::filesystem;

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

} // namespace

bool stands(const std::string &path)
{
    struct stat entry = {};
    return ::lstat(path.c_str(), &entry) == 0;
}

int renameWithoutReplacing(const std::string &from, const std::string &to)
{
    const int result = ::renameat2(AT_FDCWD, from.c_str(), AT_FDCWD, to.c_str(), RENAME_NOREPLACE);
    if (result < 0 && (errno == EINVAL || errno == ENOSYS))
        return renameByTwoSteps(from, to);
    return result;
}

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

} // namespace velmo::NativeFiles
