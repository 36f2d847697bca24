#include "VelmoCore/Storage/AppPaths.h"

#include "VelmoCore/Storage/AtomicFile.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace velmo {
namespace {

namespace fs = std::filesystem;

fs::path native(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

QString temporaryDirectory(const QString &appName)
{
    const QString runtime = qEnvironmentVariable("XDG_RUNTIME_DIR");
    struct stat status = {};
    if (runtime.startsWith(u'/') && ::stat(native(runtime).c_str(), &status) == 0 &&
        S_ISDIR(status.st_mode) && status.st_uid == ::geteuid())
        return QDir(runtime).filePath(appName);
    return QStringLiteral("/tmp/%1-%2").arg(appName, QString::number(::geteuid()));
}

/// /tmp is everybody's: what stands there under our name may be another user's folder or link.
void claimDirectory(const QString &path)
{
    const int directory =
        ::open(native(path).c_str(), O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (directory < 0)
        throw FileError(path, errno);
    struct stat status = {};
    int code = ::fstat(directory, &status) == 0 ? 0 : errno;
    if (code == 0 && status.st_uid != ::geteuid())
        code = EPERM;
    if (code == 0 && (status.st_mode & 077) != 0 && ::fchmod(directory, 0700) != 0)
        code = errno;
    ::close(directory);
    if (code != 0)
        throw FileError(path, code);
}

} // namespace

AppPaths AppPaths::standard(const QString &appName, const QString &legacyName)
{
    const QDir support(baseDirectory("XDG_DATA_HOME", QStringLiteral(".local/share")));
    const QDir caches(baseDirectory("XDG_CACHE_HOME", QStringLiteral(".cache")));
    if (!legacyName.isEmpty()) {
        migrate(support.filePath(legacyName), support.filePath(appName));
        migrate(caches.filePath(legacyName), caches.filePath(appName));
    }
    return {support.filePath(appName), caches.filePath(appName), temporaryDirectory(appName)};
}

QString AppPaths::settingsFile() const
{
    return QDir(support).filePath(QStringLiteral("settings.json"));
}

QString AppPaths::activityHistoryFile() const
{
    return supportFile(QStringLiteral("activity-history.json"));
}

QString AppPaths::supportFile(const QString &name) const
{
    return QDir(support).filePath(name);
}

void AppPaths::ensureExists() const
{
    AtomicFile::makeDirectory(support);
    AtomicFile::makeDirectory(caches);
    AtomicFile::makeDirectory(temporary);
    claimDirectory(temporary);
}

void AppPaths::purgeTemporary() const
{
    try {
        claimDirectory(temporary);
    } catch (const FileError &) {
        return; // Somebody else's link could lead anywhere.
    }
    std::error_code error;
    std::vector<fs::path> children;
    fs::directory_iterator entry(native(temporary), error);
    for (; !error && entry != fs::directory_iterator(); entry.increment(error))
        children.push_back(entry->path());
    for (const fs::path &child : children)
        fs::remove_all(child, error);
}

void AppPaths::migrate(const QString &from, const QString &to)
{
    std::error_code error;
    if (fs::symlink_status(native(to), error).type() != fs::file_type::not_found ||
        fs::symlink_status(native(from), error).type() != fs::file_type::directory)
        return;
    fs::rename(native(from), native(to), error);
    std::error_code ignored;
    if (error)
        fs::create_directory_symlink(native(from), native(to), ignored);
    else
        fs::create_directory_symlink(native(to), native(from), ignored);
}

QString AppPaths::baseDirectory(const char *variable, const QString &underHome)
{
    const QString value = qEnvironmentVariable(variable);
    return value.startsWith(u'/') ? value : QDir::home().filePath(underHome);
}

} // namespace velmo
