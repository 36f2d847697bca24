#include "VelmoSystem/FileProcessing/ExtractedTree.h"

#include "VelmoCore/Files/NameEncoding.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QFile>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <future>
#include <iterator>
#include <map>
#include <memory>
#include <ranges>
#include <span>
#include <string_view>
#include <sys/stat.h>
#include <utility>
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

/// Something in a folder. Makes the path only for who asks: a tree has ten thousands of them.
struct Entry {
    const std::string &folder;
    std::string_view name;
    const struct stat &status;

    std::string path() const { return (folder + '/').append(name); }
};

struct Folder {
    std::string path;
    mode_t mode;
};

/// Calls `visit` with every `Entry` in `folder`, which it opens if it is closed. Adds the folders
/// among them to `found`.
template <class Visit>
void look(const Folder &folder, std::vector<Folder> &found, const Visit &visit)
{
    const auto &[path, mode] = folder;
    if ((mode & S_IRWXU) != S_IRWXU && ::chmod(path.c_str(), (mode | S_IRWXU) & ACCESSPERMS) != 0)
        throw fileError(path, errno);
    const std::unique_ptr<DIR, CloseDirectory> directory(::opendir(path.c_str()));
    if (!directory)
        throw fileError(path, errno);
    for (;;) {
        errno = 0;
        const dirent *item = ::readdir(directory.get());
        if (!item && errno != 0)
            throw fileError(path, errno);
        if (!item)
            return;
        struct stat status = {};
        const Entry entry{path, item->d_name, status};
        if (entry.name == "." || entry.name == "..")
            continue;
        if (::fstatat(::dirfd(directory.get()), item->d_name, &status, AT_SYMLINK_NOFOLLOW) != 0)
            throw fileError(entry.path(), errno);
        visit(entry);
        if (S_ISDIR(status.st_mode))
            found.push_back({entry.path(), status.st_mode});
    }
}

/// The same for everything beneath `path`, level by level.
template <class Visit>
void walk(const std::string &path, const Visit &visit)
{
    std::vector<Folder> level = {{path, statusOf(path).st_mode}};
    while (!level.empty()) {
        std::vector<Folder> next;
        for (const Folder &folder : level)
            look(folder, next, visit);
        level = std::move(next);
    }
}

/// Printable ASCII, as nearly all names are.
bool isPlain(std::string_view name)
{
    return std::ranges::all_of(name, [](char c) { return c >= ' ' && c <= '~'; });
}

std::string repaired(const std::string &name, const QByteArray &codePage)
{
    constexpr std::size_t longest = NAME_MAX;
    const QByteArray bytes = QByteArray::fromStdString(name);
    const bool isUtf8 = bytes.isValidUtf8();
    QString text = QString::fromUtf8(bytes);
    if (isUtf8 &&
        std::ranges::none_of(text, [](QChar c) { return c.category() == QChar::Other_Control; }))
        return name;
    if (!isUtf8 && !codePage.isEmpty()) {
        const QString decoded = NameEncoding::decoded(bytes, codePage);
        if (std::size_t(decoded.toUtf8().size()) <= longest)
            text = decoded;
    }
    std::ranges::replace_if(
        text,
        [&](QChar c) {
            return c.category() == QChar::Other_Control ||
                   (!isUtf8 && c == QChar::ReplacementCharacter);
        },
        u'_');
    return QFile::encodeName(text).toStdString();
}

/// To a name that is free, without replacing anything.
void repairName(const fs::path &path, const QByteArray &codePage)
{
    const std::string name = repaired(path.filename().native(), codePage);
    fs::path target = path.parent_path() / name;
    std::error_code error;
    for (int number = 2; fs::symlink_status(target, error).type() != fs::file_type::not_found;
         ++number)
        target = path.parent_path() / (name + '_' + std::to_string(number));
    fs::rename(path, target, error);
    if (error)
        throw fileError(path, error.value());
}

/// What is to be reported of and done to the entries of some folders.
class Survey {
public:
    explicit Survey(const QByteArray &codePage) : m_codePage(codePage) {}
    Survey(std::span<const Folder> level, const QByteArray &codePage) : m_codePage(codePage)
    {
        for (const Folder &folder : level)
            look(folder, folders, [this](const Entry &entry) { note(entry); });
    }

    void add(Survey &&other);
    void repair();

    ExtractedTree::Contents contents;
    std::vector<Folder> folders; ///< among the entries

private:
    struct Names {
        nlink_t known = 0;
        std::vector<std::string> paths;
    };

    void note(const Entry &entry);

    const QByteArray &m_codePage;
    std::map<std::pair<dev_t, ino_t>, Names> m_linked;
    std::vector<std::string> m_foreign;
    std::vector<fs::path> m_misnamed; ///< a folder before what it holds
    std::vector<std::pair<std::string, mode_t>> m_modes;
};

void Survey::note(const Entry &entry)
{
    constexpr qint64 blockSize = 512; // of `st_blocks`, on every file system
    const struct stat &status = entry.status;
    if (!isPlain(entry.name) && repaired(std::string(entry.name), m_codePage) != entry.name)
        m_misnamed.emplace_back(entry.path());
    if (S_ISREG(status.st_mode)) {
        contents.size += status.st_blocks * blockSize;
        if (status.st_nlink > 1) {
            Names &names = m_linked[{status.st_dev, status.st_ino}];
            names.known = status.st_nlink;
            names.paths.push_back(entry.path());
        }
        const mode_t wanted = (status.st_mode & ACCESSPERMS) | S_IRUSR;
        if (wanted != (status.st_mode & ALLPERMS))
            m_modes.emplace_back(entry.path(), wanted);
    } else if (S_ISLNK(status.st_mode)) {
        contents.hasLinks = true;
    } else if (!S_ISDIR(status.st_mode)) {
        m_foreign.push_back(entry.path());
    }
}

void Survey::add(Survey &&other)
{
    const auto append = [](auto &to, auto &from) {
        to.insert(to.end(), std::move_iterator(from.begin()), std::move_iterator(from.end()));
    };
    contents.size += other.contents.size;
    contents.hasLinks = contents.hasLinks || other.contents.hasLinks;
    append(folders, other.folders);
    append(m_foreign, other.m_foreign);
    append(m_misnamed, other.m_misnamed);
    append(m_modes, other.m_modes);
    for (auto &[file, names] : other.m_linked) {
        m_linked[file].known = names.known;
        append(m_linked[file].paths, names.paths);
    }
}

void Survey::repair()
{
    for (const auto &[file, names] : m_linked) {
        if (names.paths.size() < names.known)
            m_foreign.insert(m_foreign.end(), names.paths.begin(), names.paths.end());
    }
    for (const std::string &path : m_foreign)
        removeEntry(path);
    // Not sooner: a file that is linked from elsewhere is none of ours.
    for (const auto &[path, mode] : m_modes) {
        if (::chmod(path.c_str(), mode) != 0 && errno != ENOENT)
            throw fileError(path, errno);
    }
    // What a folder holds goes before the folder, whose new name changes their paths.
    for (const fs::path &path : m_misnamed | std::views::reverse) {
        if (fs::exists(fs::symlink_status(path)))
            repairName(path, m_codePage);
    }
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

ExtractedTree::Contents ExtractedTree::makeOrdinary(const QString &folder,
                                                    const QByteArray &codePage)
{
    Survey survey(codePage);
    std::vector<Folder> level = {{native(folder), statusOf(native(folder)).st_mode}};
    while (!level.empty()) {
        constexpr std::size_t worthAThread = 16;
        const std::span<const Folder> all = level;
        const std::size_t half = all.size() < worthAThread ? all.size() : all.size() / 2;
        std::future<Survey> others;
        if (half < all.size())
            others =
                std::async(std::launch::async, [&] { return Survey(all.subspan(half), codePage); });
        survey.add(Survey(all.first(half), codePage));
        if (others.valid())
            survey.add(others.get());
        level = std::exchange(survey.folders, {});
    }
    survey.repair();
    return survey.contents;
}

void ExtractedTree::removeEscapingLinks(const QString &folder)
{
    std::error_code error;
    const fs::path root = fs::canonical(native(folder), error);
    if (error)
        throw fileError(native(folder), error.value());
    // All are judged before one goes: a link by way of another would else lead nowhere.
    std::vector<fs::path> escaping;
    walk(root, [&](const Entry &entry) {
        if (S_ISLNK(entry.status.st_mode) && escapes(entry.path(), root))
            escaping.emplace_back(entry.path());
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
    walk(native(folder), [](const Entry &) {});
    fs::remove_all(native(folder), error);
    if (error)
        throw fileError(native(folder), error.value());
}

} // namespace velmo
