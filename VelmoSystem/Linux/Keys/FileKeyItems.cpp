#include "VelmoSystem/Linux/Keys/FileKeyItems.h"

#include "VelmoCore/Storage/AtomicFile.h"

#include <QFile>
#include <QUrl>

#include <cerrno>
#include <unistd.h>

namespace velmo {

FileKeyItems::FileKeyItems(const QString &folder) : m_folder(folder)
{
}

std::optional<QByteArray> FileKeyItems::find(const Item &item) const
{
    try {
        return AtomicFile::read(pathOf(item));
    } catch (const FileError &error) {
        if (error.code() == ENOENT)
            return std::nullopt;
        throw Refusal(error.code(), error.description());
    }
}

bool FileKeyItems::add(const Item &item, const QByteArray &secret)
{
    try {
        AtomicFile::makeDirectory(m_folder);
        AtomicFile::removeStrays(pathOf(item));
        return AtomicFile::create(secret, pathOf(item));
    } catch (const FileError &error) {
        throw Refusal(error.code(), error.description());
    }
}

void FileKeyItems::remove(const Item &item)
{
    const QByteArray path = QFile::encodeName(pathOf(item));
    if (::unlink(path.constData()) != 0 && errno != ENOENT) {
        const FileError error(pathOf(item), errno);
        throw Refusal(error.code(), error.description());
    }
}

void FileKeyItems::rename(const Item &)
{
}

QString FileKeyItems::pathOf(const Item &item) const
{
    const QByteArray name =
        QUrl::toPercentEncoding(item.service) + ':' + QUrl::toPercentEncoding(item.account);
    return m_folder + u'/' + QString::fromLatin1(name);
}

} // namespace velmo
