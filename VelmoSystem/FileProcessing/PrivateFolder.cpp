#include "VelmoSystem/FileProcessing/PrivateFolder.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Uuid.h"
#include "VelmoCore/Storage/AtomicFile.h"
#include "VelmoSystem/FileProcessing/ExtractedTree.h"

#include <QDir>
#include <QRegularExpression>

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velmo {
namespace {

QString newPath(PrivateFolder::Purpose purpose)
{
    const QString name = purpose == PrivateFolder::Purpose::extraction
                             ? QStringLiteral("Orvane-extract-")
                             : QStringLiteral("Orvane-zip-");
    return QDir::tempPath() + u'/' + name + uuidText(makeUuid());
}

void make(const QString &path)
{
    if (::mkdir(QFile::encodeName(path).constData(), S_IRWXU) != 0)
        throw FileError(path, errno);
}

/// A descriptor of the folder that is locked; -1 with errno where it is gone, locked by another
/// (EWOULDBLOCK) or not this user's, or where its file system has no locks.
int locked(const QString &path)
{
    const int folder = ::open(QFile::encodeName(path).constData(),
                              O_RDONLY | O_DIRECTORY | O_NOFOLLOW | O_CLOEXEC);
    if (folder < 0)
        return -1;
    struct stat status = {};
    int code = ::flock(folder, LOCK_EX | LOCK_NB) == 0 && ::fstat(folder, &status) == 0 ? 0 : errno;
    if (code == 0 && status.st_nlink == 0)
        code = ENOENT;
    if (code == 0 && status.st_uid != ::geteuid())
        code = EPERM;
    if (code == 0)
        return folder;
    ::close(folder);
    errno = code;
    return -1;
}

void removeOrLog(const QString &path)
{
    try {
        ExtractedTree::remove(path);
    } catch (const FileError &error) {
        qCWarning(Log::storage, "%s", qPrintable(error.description()));
    }
}

} // namespace

PrivateFolder::PrivateFolder(Purpose purpose)
{
    // Before it is locked a new one may be taken for a leftover.
    do {
        m_path = newPath(purpose);
        make(m_path);
        m_lock = locked(m_path);
    } while (m_lock < 0 && (errno == EWOULDBLOCK || errno == ENOENT));
}

PrivateFolder::~PrivateFolder()
{
    removeOrLog(m_path);
    if (m_lock >= 0)
        ::close(m_lock);
}

QString PrivateFolder::makeFolder(const QString &name) const
{
    make(path(name));
    return path(name);
}

void PrivateFolder::removeLeftovers()
{
    static const QRegularExpression ours(
        QStringLiteral("^Orvane-(extract|zip)-[0-9A-F]{8}(-[0-9A-F]{4}){3}-[0-9A-F]{12}$"));
    const QDir directory(QDir::tempPath());
    for (const QString &name : directory.entryList(QDir::Dirs | QDir::Hidden | QDir::System)) {
        if (!ours.match(name).hasMatch())
            continue;
        const int lock = locked(directory.filePath(name));
        if (lock < 0)
            continue;
        removeOrLog(directory.filePath(name));
        ::close(lock);
    }
}

} // namespace velmo
