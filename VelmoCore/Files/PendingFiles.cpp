#include "VelmoCore/Files/PendingFiles.h"

#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Files/NativeFiles.h"
#include "VelmoCore/Foundation/Json.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Uuid.h"

#include <QFileInfo>

#include <algorithm>
#include <fcntl.h>
#include <filesystem>
#include <memory>
#include <set>
#include <sys/file.h>

namespace velmo::PendingFiles {

using namespace NativeFiles;

namespace {

namespace fs = std::filesystem;

struct Content {
    std::vector<PendingFile> files;
};
BOOST_DESCRIBE_STRUCT(Content, (), (files))

constexpr qint64 largestRecord = 256 << 20;
constexpr const char *recordEnding = ".json";
constexpr const char *lockName = "/lock";

/// Set while no operation runs.
std::string &recordFolder()
{
    static std::string folder;
    return folder;
}

QString localPath(const QUrl &url)
{
    return url.adjusted(QUrl::StripTrailingSlash).toLocalFile();
}

std::string parentOf(const std::string &path)
{
    return fs::path(path).parent_path();
}

/// Nothing stands there, and nothing is going to: where the folder isn't there either, its disk may
/// come back.
bool isGone(const std::string &path)
{
    return !stands(path) && errno == ENOENT && stands(parentOf(path));
}

bool isSettled(const std::vector<PendingFile> &files)
{
    return std::ranges::all_of(
        files, [](const PendingFile &file) { return isGone(file.hidden.toStdString()); });
}

/// Held while records are counted up, and while one is made: so none is ever half there.
class FolderLock {
public:
    FolderLock(const std::string &folder, int kind)
        : m_file(
              ::open((folder + lockName).c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0600),
              shown(folder))
    {
        orFail(retried([&] { return ::flock(m_file, kind); }), folder);
    }

private:
    Descriptor m_file;
};

/// A record that no running operation has.
struct Claim {
    std::string path;
    std::unique_ptr<Descriptor> file; ///< locked
    std::vector<PendingFile> files;
};

std::optional<Claim> claim(const std::string &path)
{
    Claim claimed{path, nullptr, {}};
    try {
        claimed.file = std::make_unique<Descriptor>(
            ::open(path.c_str(), O_RDWR | O_NOFOLLOW | O_CLOEXEC), shown(path));
        if (::flock(*claimed.file, LOCK_EX | LOCK_NB) != 0)
            return std::nullopt;
        claimed.files = Json::decode<Content>(AtomicFile::read(shown(path), largestRecord)).files;
    } catch (const JsonError &error) {
        // Nothing was hidden before it was written.
        qCInfo(Log::storage).noquote() << shown(path) << error.description();
    } catch (const FileError &error) {
        qCWarning(Log::storage).noquote() << error.description();
        return std::nullopt;
    }
    return claimed;
}

std::vector<Claim> claimAll()
{
    std::vector<Claim> claims;
    const std::string &folder = recordFolder();
    if (!hasRecords())
        return claims;
    const FolderLock lock(folder, LOCK_EX);
    std::error_code error;
    for (auto entry = fs::directory_iterator(folder, error);
         !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (entry->path().extension() != recordEnding)
            continue;
        if (auto claimed = claim(entry->path()))
            claims.push_back(std::move(*claimed));
    }
    return claims;
}

/// The same as in the record, for a folder that may have another name by now.
std::vector<PendingFile> filesIn(const std::string &folder, const std::vector<PendingFile> &files)
{
    const auto here = [&](const QByteArray &path) {
        return (fs::path(folder) / fs::path(path.toStdString()).filename()).string();
    };
    std::set<std::string> oldNames;
    for (const PendingFile &file : files) {
        if (file.kind == PendingKind::renamed && stands(here(file.hidden)))
            oldNames.insert(parentOf(file.hidden.toStdString()));
    }
    std::vector<PendingFile> found;
    for (PendingFile file : files) {
        const std::string parent = parentOf(file.hidden.toStdString());
        if (!oldNames.contains(parent))
            continue;
        for (QByteArray *path : {&file.hidden, &file.first, &file.target}) {
            if (parentOf(path->toStdString()) == parent)
                *path = QByteArray::fromStdString(here(*path));
        }
        found.push_back(file);
    }
    return found;
}

std::vector<std::string> namesIn(const std::string &folder)
{
    std::vector<std::string> names;
    for (const auto &entry : fs::directory_iterator(folder))
        names.push_back(entry.path().filename());
    std::ranges::sort(names);
    return names;
}

/// Whether a copy holds all that the original does. Throws `std::filesystem::filesystem_error`.
bool isWholeCopy(const std::string &original, const std::string &copy)
{
    struct stat one = {};
    struct stat other = {};
    if (::lstat(original.c_str(), &one) != 0 || ::lstat(copy.c_str(), &other) != 0 ||
        (one.st_mode & S_IFMT) != (other.st_mode & S_IFMT))
        return false;
    if (S_ISLNK(one.st_mode))
        return fs::read_symlink(original) == fs::read_symlink(copy);
    if (S_ISREG(one.st_mode))
        return one.st_size == other.st_size && one.st_mtim.tv_sec == other.st_mtim.tv_sec &&
               one.st_mtim.tv_nsec == other.st_mtim.tv_nsec;
    const std::vector<std::string> names = namesIn(original);
    return S_ISDIR(one.st_mode) && namesIn(copy) == names &&
           std::ranges::all_of(names, [&](const std::string &name) {
               return isWholeCopy(fs::path(original) / name, fs::path(copy) / name);
           });
}

/// Its first name, or one close to it. Throws `FileError`.
QUrl giveNameBack(const std::string &hidden, const std::string &first)
{
    if (renameWithoutReplacing(hidden, first) == 0)
        return QUrl::fromLocalFile(shown(first));
    while (errno == EEXIST) {
        const QUrl free = FileNaming::uniqueURL(QUrl::fromLocalFile(shown(first)));
        if (renameWithoutReplacing(hidden, QFile::encodeName(free.toLocalFile()).toStdString()) ==
            0)
            return free;
    }
    fail(first);
}

/// Those of the kind that still stand.
template <class Act>
void forEach(const std::vector<PendingFile> &files, PendingKind kind, Act act)
{
    for (const PendingFile &file : files) {
        if (file.kind == kind && stands(file.hidden.toStdString()))
            act(file.hidden.toStdString(), file);
    }
}

void restoreCopying(const std::vector<PendingFile> &files, Restored &restored)
{
    const auto remove = [&](const std::string &path) {
        discard(path);
        restored.removed += stands(path) ? 0 : 1;
    };
    forEach(files, PendingKind::original, [&](const std::string &hidden, const PendingFile &file) {
        const auto remains = std::ranges::find(files, PendingKind::remains, &PendingFile::kind);
        // Under another name, in case that this run is killed while it removes a folder.
        if (isWholeCopy(hidden, file.target.toStdString()) && remains != files.end())
            orFail(renameWithoutReplacing(hidden, remains->hidden.toStdString()), hidden);
        else
            restored.named.push_back(giveNameBack(hidden, file.first.toStdString()));
    });
    forEach(files, PendingKind::remains,
            [&](const std::string &hidden, const PendingFile &) { remove(hidden); });
    forEach(files, PendingKind::copy, [&](const std::string &hidden, const PendingFile &file) {
        if (stands(file.first.toStdString()))
            remove(hidden);
    });
}

/// All names, or none where no file is hidden: then the renaming was done.
void restoreNames(const std::vector<PendingFile> &files, Restored &restored)
{
    if (std::ranges::none_of(files, [](const PendingFile &file) {
            return file.kind == PendingKind::renamed && stands(file.hidden.toStdString());
        }))
        return;
    for (const PendingFile &file : files) {
        const std::string hidden = file.hidden.toStdString();
        const std::string target = file.target.toStdString();
        struct stat entry = {};
        if (file.kind == PendingKind::renamed && !stands(hidden) &&
            ::lstat(target.c_str(), &entry) == 0 && entry.st_ino == file.inode)
            renameWithoutReplacing(target, hidden);
    }
    forEach(files, PendingKind::renamed, [&](const std::string &hidden, const PendingFile &file) {
        restored.named.push_back(giveNameBack(hidden, file.first.toStdString()));
    });
}

template <class Act>
void logged(Act act)
{
    try {
        act();
    } catch (const LocalizedError &error) {
        qCWarning(Log::storage).noquote() << error.description();
    } catch (const fs::filesystem_error &error) {
        qCWarning(Log::storage) << error.what();
    }
}

} // namespace

Folder::Folder(const QString &path)
{
    recordFolder() = QFile::encodeName(path).toStdString();
}

Folder::~Folder()
{
    recordFolder().clear();
}

Record::Record(std::vector<PendingFile> files, bool isSynced) : m_files(std::move(files))
{
    if (!recordFolder().empty())
        write(recordFolder(), isSynced);
}

Record::~Record()
{
    if (m_file < 0)
        return;
    if (isSettled(m_files))
        ::unlink(m_path.c_str());
    ::close(m_file);
}

void Record::write(const std::string &folder, bool isSynced)
{
    if (::mkdir(folder.c_str(), 0700) != 0 && errno != EEXIST)
        fail(folder);
    const FolderLock lock(folder, LOCK_SH);
    m_path = folder + '/' + uuidText(makeUuid()).toStdString() + recordEnding;
    m_file = ::open(m_path.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW | O_CLOEXEC, 0600);
    orFail(m_file, m_path);
    try {
        orFail(::flock(m_file, LOCK_EX | LOCK_NB), m_path);
        const QByteArray text = Json::encode(Content{m_files});
        for (qsizetype done = 0; done < text.size();) {
            const ssize_t count = retried([&] {
                return ::write(m_file, text.constData() + done, std::size_t(text.size() - done));
            });
            orFail(int(std::min<ssize_t>(count, 0)), m_path);
            done += count;
        }
        if (isSynced) {
            sync(m_file, m_path);
            sync(Descriptor(::open(folder.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC),
                            shown(folder)),
                 folder);
        }
    } catch (const FileError &) {
        ::unlink(m_path.c_str());
        ::close(m_file);
        throw;
    }
}

bool hasRecords()
{
    std::error_code error;
    if (recordFolder().empty())
        return false;
    for (auto entry = fs::directory_iterator(recordFolder(), error);
         !error && entry != fs::directory_iterator(); entry.increment(error)) {
        if (entry->path().extension() == recordEnding)
            return true;
    }
    return false;
}

Restored restore(const std::optional<QString> &folder)
{
    Restored restored;
    std::vector<Claim> claims;
    logged([&] { claims = claimAll(); });
    if (!folder) {
        for (const Claim &claimed : claims)
            logged([&] { restoreCopying(claimed.files, restored); });
    }
    // Last: what is given back above may have had a hidden name already.
    for (const Claim &claimed : claims) {
        const std::vector<PendingFile> files =
            folder ? filesIn(QFile::encodeName(*folder).toStdString(), claimed.files)
                   : claimed.files;
        logged([&] { restoreNames(files, restored); });
        const bool isAll = files.size() == claimed.files.size();
        if (isSettled(claimed.files) || (isAll && isSettled(files)))
            ::unlink(claimed.path.c_str());
    }
    return restored;
}

void restoreBeside(const std::vector<QUrl> &files)
{
    std::set<QString> folders;
    for (const QUrl &file : files)
        folders.insert(QFileInfo(localPath(file)).path());
    for (const QString &folder : folders) {
        if (hasRecords())
            restore(folder);
    }
}

Renaming::Renaming(const std::vector<QUrl> &files, const std::vector<QUrl> &targets)
{
    std::vector<PendingFile> pending;
    for (std::size_t index = 0; index < files.size(); ++index) {
        const QString first = localPath(files[index]);
        const QString hidden =
            QFileInfo(first).path() + QStringLiteral("/.velmo-rename-") + uuidText(makeUuid());
        const QByteArray native = QFile::encodeName(first);
        struct stat entry = {};
        ::lstat(native.constData(), &entry); // what isn't there fails when it is renamed
        m_hidden.push_back(QUrl::fromLocalFile(hidden));
        pending.push_back({PendingKind::renamed, QFile::encodeName(hidden), native,
                           QFile::encodeName(localPath(targets[index])), entry.st_ino});
    }
    try {
        m_record = std::make_unique<Record>(std::move(pending), true);
    } catch (const FileError &error) {
        if (files.empty())
            throw;
        throw FileError(localPath(files.front()), error.code());
    }
}

} // namespace velmo::PendingFiles
