#include "VelmoSystem/FileProcessing/ExtractedTree.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QFile>
#include <QStringDecoder>

#include <algorithm>
#include <filesystem>
#include <map>
#include <ranges>
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

std::vector<fs::path> children(const fs::path &folder)
{
    std::error_code error;
    std::vector<fs::path> result;
    fs::directory_iterator entry(folder, error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
        result.push_back(entry->path());
    if (error)
        throw fileError(folder, error.value());
    return result;
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

/// Everything beneath `folder`, folders before what they hold; opens those that are closed.
template <class Visit>
void walk(const fs::path &folder, const Visit &visit)
{
    const mode_t mode = statusOf(folder).st_mode;
    if ((mode & S_IRWXU) != S_IRWXU && ::chmod(folder.c_str(), (mode | S_IRWXU) & ACCESSPERMS) != 0)
        throw fileError(folder, errno);
    for (const fs::path &path : children(folder)) {
        const struct stat status = statusOf(path);
        visit(path, status);
        if (S_ISDIR(status.st_mode))
            walk(path, visit);
    }
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
    walk(native(folder), [&](const fs::path &path, const struct stat &status) {
        if (const std::string name = path.filename(); repaired(name) != name)
            misnamed.push_back(path);
        if (S_ISREG(status.st_mode)) {
            contents.size += status.st_blocks * blockSize;
            if (status.st_nlink > 1) {
                Names &names = linked[{status.st_dev, status.st_ino}];
                names.known = status.st_nlink;
                names.paths.push_back(path);
            }
            const mode_t wanted = (status.st_mode & ACCESSPERMS) | S_IRUSR;
            if (wanted != (status.st_mode & ALLPERMS))
                modes.emplace_back(path, wanted);
        } else if (S_ISLNK(status.st_mode)) {
            contents.hasLinks = true;
        } else if (!S_ISDIR(status.st_mode)) {
            foreign.push_back(path);
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
    walk(root, [&](const fs::path &path, const struct stat &status) {
        if (S_ISLNK(status.st_mode) && escapes(path, root))
            escaping.push_back(path);
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
    walk(native(folder), [](const fs::path &, const struct stat &) {});
    fs::remove_all(native(folder), error);
    if (error)
        throw fileError(native(folder), error.value());
}

} // namespace velmo
