#include "VelmoCore/Files/FileTransfer.h"

#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Files/NativeFiles.h"
#include "VelmoCore/Files/PendingFiles.h"
#include "VelmoCore/Files/TreeCopier.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Uuid.h"

#include <fcntl.h>
#include <filesystem>
#include <memory>

namespace velmo {

using namespace NativeFiles;

namespace {

namespace fs = std::filesystem;

constexpr int mostAttempts = 1000;

std::string native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

/// What stands hidden while something is copied to `to`, and on a move while it leaves `from`.
struct HiddenNames {
    HiddenNames(const std::string &from, const std::string &to)
        : HiddenNames(from, to, "/.orvane-" + uuidText(makeUuid()).toStdString())
    {
    }

    std::string copy;
    std::string original;
    std::string remains; ///< of an original that is a folder

private:
    HiddenNames(const std::string &from, const std::string &to, const std::string &name)
        : copy(fs::path(to).parent_path().string() + name),
          original(fs::path(from).parent_path().string() + name + "-original"),
          remains(fs::path(from).parent_path().string() + name + "-rest")
    {
    }
};

/// Recorded for a later run. Where that can't be, as on a full disk, it goes on: a user's file has
/// a whole copy whenever it stands hidden.
std::unique_ptr<PendingFiles::Record> record(const std::string &from, const std::string &to,
                                             const HiddenNames &names, bool isMove)
{
    const auto pending = [&](PendingKind kind, const std::string &hidden) {
        return PendingFile{kind, QByteArray::fromStdString(hidden), QByteArray::fromStdString(from),
                           QByteArray::fromStdString(to), 0};
    };
    std::vector files{pending(PendingKind::copy, names.copy)};
    if (isMove) {
        files.push_back(pending(PendingKind::original, names.original));
        files.push_back(pending(PendingKind::remains, names.remains));
    }
    try {
        return std::make_unique<PendingFiles::Record>(std::move(files), false);
    } catch (const FileError &error) {
        qCWarning(Log::storage).noquote() << error.description();
        return nullptr;
    }
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

/// Nothing stands at `to`, but something can.
void checkTarget(const std::string &to)
{
    checkFolderOf(to);
    if (stands(to))
        fail(to, EEXIST);
    if (errno != ENOENT)
        fail(to);
}

/// Copies beside the target under a hidden name, and gives it its name when it is whole.
void copyTo(const std::string &from, const std::string &to, const std::string &hidden,
            TreeCopier &copier)
{
    try {
        copier.copy(from, hidden);
        orFail(renameWithoutReplacing(hidden, to), to);
    } catch (...) {
        discard(hidden);
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
QString takenBack(const std::string &copy, const std::string &hidden)
{
    if (renameWithoutReplacing(copy, hidden) < 0)
        return errno == ENOENT ? QString()
                               : QStringLiteral("Uma cópia ficou em “%1”. ").arg(shown(copy));
    discard(hidden);
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

/// Under this name an original goes: a folder under one that shows a later run that half of it may
/// be gone.
std::string nameToGo(const HiddenNames &names, const std::string &from)
{
    struct stat entry = {};
    orFail(::lstat(names.original.c_str(), &entry), from);
    if (!S_ISDIR(entry.st_mode))
        return names.original;
    orFail(renameWithoutReplacing(names.original, names.remains), from);
    return names.remains;
}

/// Takes the original away now that its copy is whole: at once under another name, so that it is
/// never half there. It comes back if something was written to it meanwhile.
void replaceByCopy(const std::string &from, const std::string &copy, const HiddenNames &names,
                   const TreeCopier &copier)
{
    try {
        syncFolderOf(copy);
        orFail(renameWithoutReplacing(from, names.original), from);
    } catch (const FileError &error) {
        const QString left = takenBack(copy, names.copy);
        throw FileError(error, left + staysAt(from));
    }
    std::string aside = names.original;
    try {
        if (!copier.isUnchanged(aside) || !stands(copy))
            fail(from, EBUSY);
        aside = nameToGo(names, from);
        if (!stands(copy))
            fail(from, EBUSY);
        discard(aside);
    } catch (const FileError &error) {
        const std::string place = givenBack(aside, from);
        const QString left = takenBack(copy, names.copy);
        throw FileError(error, left + staysAt(place));
    } catch (...) {
        givenBack(aside, from);
        takenBack(copy, names.copy);
        throw;
    }
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
    if (orStaying(source, [&] { return renamed(source, target); }))
        return;
    orStaying(source, [&] { checkTarget(target); });
    const HiddenNames names(source, target);
    const auto recorded = record(source, target, names, true);
    orStaying(source, [&] { copyTo(source, target, names.copy, copier); });
    replaceByCopy(source, target, names, copier);
}

void copyFrom(const QString &from, const QString &to, const std::stop_token &stop,
              const FileTransfer::Progress &progress)
{
    const std::string source = trimmed(from);
    const std::string target = trimmed(to);
    TreeCopier copier(false, stop, progress);
    checkTarget(target);
    const HiddenNames names(source, target);
    const auto recorded = record(source, target, names, false);
    copyTo(source, target, names.copy, copier);
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
