#pragma once

#include "VelmoCore/Shelf/ShelfItem.h"

#include <QDir>
#include <QFileInfo>
#include <QUrl>

#include <algorithm>
#include <cerrno>
#include <iterator>
#include <optional>
#include <sys/stat.h>
#include <vector>

/// Where the shelf's files stand, and the order of its items; for its own sources.
namespace velmo::ShelfPaths {

inline QString standardized(const QString &path)
{
    return QDir::cleanPath(path);
}

inline QString standardized(const QUrl &url)
{
    return standardized(url.toLocalFile());
}

inline bool isInside(const QString &path, const std::optional<QString> &folder)
{
    return folder && path.startsWith(standardized(*folder) + u'/');
}

inline QString nameOf(const QUrl &url)
{
    return QFileInfo(standardized(url)).fileName();
}

/// Whether anything stands there, a dangling link too. What can't be asked counts as standing: its
/// record is all that says where it is.
inline bool stands(const QString &path)
{
    struct stat entry = {};
    return ::lstat(QFile::encodeName(path).constData(), &entry) == 0 ||
           (errno != ENOENT && errno != ENOTDIR);
}

inline const ShelfItem::File *fileOf(const ShelfItem &item)
{
    return std::get_if<ShelfItem::File>(&item.content.value);
}

inline ShelfItem::File *fileOf(ShelfItem &item)
{
    return std::get_if<ShelfItem::File>(&item.content.value);
}

inline QUrl inFolder(const QString &folder, const QString &name)
{
    return QUrl::fromLocalFile(QDir(folder).filePath(name));
}

/// All of them, newest first. Of one date, the last of the added comes before the others.
inline std::vector<ShelfItem> merged(std::vector<ShelfItem> added, std::vector<ShelfItem> items)
{
    std::ranges::reverse(added);
    std::ranges::stable_sort(added, std::greater(), &ShelfItem::added);
    std::vector<ShelfItem> all;
    all.reserve(added.size() + items.size());
    auto next = added.begin();
    for (ShelfItem &item : items) {
        for (; next != added.end() && next->added >= item.added; ++next)
            all.push_back(std::move(*next));
        all.push_back(std::move(item));
    }
    std::move(next, added.end(), std::back_inserter(all));
    return all;
}

} // namespace velmo::ShelfPaths
