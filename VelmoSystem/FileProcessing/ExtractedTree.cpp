#include "VelmoSystem/FileProcessing/ExtractedTree.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QFile>
#include <QStringDecoder>

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <map>
#include <memory>
#include <ranges>
#include <string_view>
#include <sys/stat.h>
#include <vector>

namespace velmo {
namespace {

namespace fs = std::filesystem;

fs::path native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

FileError fileError(const fs::path &path, int code)
{
    return {QFile::decodeName(path.c_str()), code};
}

struct stat statusOf(const fs::path &path)
{
    struct stat status = {};
    if (::lstat(path.c_str(), &status) != 0)
        throw fileError(path, errno);
    return status;
}

void removeEntry(const fs::path &path)
{
    std::error_code error;
    fs::remove(path, error);
    if (error)
        throw fileError(path, error.value());
}

struct CloseDirectory {
    void operator()(DIR *directory) const { ::closedir(directory); }
};

/// Calls `visit` with the path and the status of everything beneath `folder`, folders before what
/// they hold; opens those that are closed.
template <class Visit>
void walk(const std::string &folder, mode_t mode, const Visit &visit)
{
    if ((mode & S_IRWXU) != S_IRWXU && ::chmod(folder.c_str(), (mode | S_IRWXU) & ACCESSPERMS) != 0)
        throw fileError(folder, errno);
    // Not one open folder a level: a tree may be deeper than a process may have files open.
    std::vector<std::pair<std::string, mode_t>> folders;
    {
        const std::unique_ptr<DIR, CloseDirectory> directory(::opendir(folder.c_str()));
        if (!directory)
            throw fileError(folder, errno);
        for (;;) {
            errno = 0;
            const dirent *entry = ::readdir(directory.get());
            if (!entry && errno != 0)
                throw fileError(folder, errno);
            if (!entry)
                break;
            const std::string_view name = entry->d_name;
            if (name == "." || name == "..")
                continue;
            const std::string path = folder + '/' + entry->d_name;
            struct stat status = {};
            if (::fstatat(::dirfd(directory.get()), entry->d_name, &status, AT_SYMLINK_NOFOLLOW) !=
                0)
                throw fileError(path, errno);
            visit(path, status);
            if (S_ISDIR(status.st_mode))
                folders.emplace_back(path, status.st_mode);
        }
    }
    for (const auto &[path, pathMode] : folders)
        walk(path, pathMode, visit);
}

template <class Visit>
void walk(const std::string &folder, const Visit &visit)
{
    walk(folder, statusOf(folder).st_mode, visit);
}

/// Printable ASCII, as nearly all names are.
bool isPlain(std::string_view name)
{
    return std::ranges::all_of(name, [](char c) { return c >= ' ' && c <= '~'; });
}

std::string repaired(const std::string &name)
{
    QStringDecoder decode(QStringConverter::Utf8, QStringConverter::Flag::Stateless);
    QString text = decode(QByteArrayView(name.data(), qsizetype(name.size())));
    if (decode.hasError()) {
        text.replace(QChar::ReplacementCharacter, u'_');
    } else if (std::ranges::none_of(text,
                                    [](QChar c) { return c.category() == QChar::Other_Control; })) {
        return name;
    }
    std::ranges::replace_if(
        text, [](QChar c) { return c.category() == QChar::Other_Control; }, u'_');
    return QFile::encodeName(text).toStdString();
}

/// To a name that is free, without replacing anything.
void repairName(const fs::path &path)
{
    const std::string name = repaired(path.filename().native());
    fs::path target = path.parent_path() / name;
    std::error_code error;
    for (int number = 2; fs::symlink_status(target, error).type() != fs::file_type::not_found;
         ++number)
        target = path.parent_path() / (name + '_' + std::to_string(number));
    fs::rename(path, target, error);
    if (error)
        throw fileError(path, error.value());
}

/// Whether a link leads out of `folder`, by way of others too. What doesn't exist is judged by what
/// the links say: it may come to exist.
bool escapes(const fs::path &link, const fs::path &folder)
{
    constexpr int followedLinks = 40; // as many as the kernel follows
    fs::path at = link.parent_path();
    std::vector<fs::path> parts = {link.filename()}; // the next one last
    for (int followed = 0; !parts.empty();) {
        const fs::path part = parts.back();
        parts.pop_back();
        if (part == ".." && at == folder)
            return true;
        if (part == "..")
            at = at.parent_path();
        if (part == ".." || part == "." || part.empty())
            continue;
        std::error_code error;
        const fs::path target = fs::read_symlink(at / part, error);
        if (error) {
            at /= part;
            continue;
        }
        if (target.is_absolute() || ++followed > followedLinks)
            return true;
        const std::vector<fs::path> next(target.begin(), target.end());
        parts.insert(parts.end(), next.rbegin(), next.rend());
    }
    return false;
}

} // namespace

ExtractedTree::Contents ExtractedTree::makeOrdinary(const QString &folder)
{
    struct Names {
        nlink_t known = 0;
        std::vector<fs::path> paths;
    };
    std::map<std::pair<dev_t, ino_t>, Names> linked;
    constexpr qint64 blockSize = 512; // of `st_blocks`, on every file system
    Contents contents;
    std::vector<fs::path> foreign;
    std::vector<fs::path> misnamed;
    std::vector<std::pair<fs::path, mode_t>> modes;
    walk(native(folder), [&](const std::string &path, const struct stat &status) {
        const std::string_view name = std::string_view(path).substr(path.rfind('/') + 1);
        if (!isPlain(name) && repaired(std::string(name)) != name)
            misnamed.emplace_back(path);
        if (S_ISREG(status.st_mode)) {
            contents.size += status.st_blocks * blockSize;
            if (status.st_nlink > 1) {
                Names &names = linked[{status.st_dev, status.st_ino}];
                names.known = status.st_nlink;
                names.paths.emplace_back(path);
            }
            const mode_t wanted = (status.st_mode & ACCESSPERMS) | S_IRUSR;
            if (wanted != (status.st_mode & ALLPERMS))
                modes.emplace_back(path, wanted);
        } else if (S_ISLNK(status.st_mode)) {
            contents.hasLinks = true;
        } else if (!S_ISDIR(status.st_mode)) {
            foreign.emplace_back(path);
        }
    });
    for (const auto &[file, names] : linked) {
        if (names.paths.size() < names.known)
            foreign.insert(foreign.end(), names.paths.begin(), names.paths.end());
    }
    std::ranges::for_each(foreign, removeEntry);
    // Not sooner: a file that is linked from elsewhere is none of ours.
    for (const auto &[path, mode] : modes) {
        if (::chmod(path.c_str(), mode) != 0 && errno != ENOENT)
            throw fileError(path, errno);
    }
    // What a folder holds goes before the folder, whose new name changes their paths.
    for (const fs::path &path : misnamed | std::views::reverse) {
        if (fs::exists(fs::symlink_status(path)))
            repairName(path);
    }
    return contents;
}

void ExtractedTree::removeEscapingLinks(const QString &folder)
{
    std::error_code error;
    const fs::path root = fs::canonical(native(folder), error);
    if (error)
        throw fileError(native(folder), error.value());
    // All are judged before one goes: a link by way of another would else lead nowhere.
    std::vector<fs::path> escaping;
    walk(root, [&](const std::string &path, const struct stat &status) {
        if (S_ISLNK(status.st_mode) && escapes(path, root))
            escaping.emplace_back(path);
    });
    for (const fs::path &link : escaping) {
        qCWarning(Log::storage, "Link simbólico externo removido da extração");
        removeEntry(link);
    }
}

void ExtractedTree::remove(const QString &folder)
{
    std::error_code error;
    fs::remove_all(native(folder), error);
    if (!error)
        return;
    walk(native(folder), [](const std::string &, const struct stat &) {});
    fs::remove_all(native(folder), error);
    if (error)
        throw fileError(native(folder), error.value());
}

} // namespace velmo
