#include "VelmoSystem/Storage/StorageInspector.h"

#include "VelmoCore/Foundation/Words.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QFile>

#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace velmo {
namespace {

namespace fs = std::filesystem;

constexpr qint64 blockSize = 512; // of `st_blocks`, on every file system

fs::path native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

FileError fileError(const fs::path &path, const std::error_code &error)
{
    return {QFile::decodeName(path.c_str()), error.value()};
}

struct CloseDirectory {
    void operator()(DIR *directory) const { ::closedir(directory); }
};

} // namespace

qint64 StorageInspector::size(const QString &path, const std::stop_token &stop)
{
    qint64 total = 0;
    std::vector<std::string> folders = {native(path)};
    while (!folders.empty() && !stop.stop_requested()) {
        const std::string folder = std::move(folders.back());
        folders.pop_back();
        const std::unique_ptr<DIR, CloseDirectory> directory(::opendir(folder.c_str()));
        while (const dirent *entry = directory ? ::readdir(directory.get()) : nullptr) {
            const std::string_view name = entry->d_name;
            struct stat status = {};
            if (name == "." || name == ".." ||
                ::fstatat(::dirfd(directory.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) !=
                    0)
                continue;
            if (S_ISREG(status.st_mode))
                total += status.st_blocks * blockSize;
            else if (S_ISDIR(status.st_mode))
                folders.push_back(folder + '/' + entry->d_name);
        }
    }
    return total;
}

QString StorageInspector::format(qint64 bytes)
{
    return Words::size(bytes);
}

void StorageInspector::clearContents(const QString &path)
{
    std::error_code error;
    std::vector<fs::path> children;
    fs::directory_iterator entry(native(path), error);
    if (error == std::errc::no_such_file_or_directory)
        return;
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
        children.push_back(entry->path());
    if (error)
        throw fileError(native(path), error);
    for (const fs::path &child : children) {
        fs::remove_all(child, error);
        if (error)
            throw fileError(child, error);
    }
}

} // namespace velmo
