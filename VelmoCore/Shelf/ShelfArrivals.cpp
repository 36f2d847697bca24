#include "VelmoCore/Shelf/ShelfArrivals.h"

#include "VelmoCore/Files/FileNaming.h"
#include "VelmoCore/Files/NativeFiles.h"
#include "VelmoCore/Shelf/ShelfPaths.h"
#include "VelmoCore/Storage/AtomicFile.h"

#include <QSet>

namespace velmo {

using namespace ShelfPaths;

std::vector<ShelfItem> ShelfArrivals::plan(const std::vector<QUrl> &originals,
                                           const QString &folder, ShelfStorage storage, Date now,
                                           const std::stop_token &stop)
{
    AtomicFile::makeDirectory(folder);
    QSet<QString> given;
    const auto isTaken = [&given](const QUrl &place) {
        return given.contains(place.toLocalFile()) || FileNaming::exists(place);
    };
    std::vector<ShelfItem> items;
    items.reserve(originals.size());
    for (const QUrl &original : originals) {
        NativeFiles::heed(stop);
        const QString name = nameOf(original);
        const QString place = FileNaming::uniqueURL(inFolder(folder, name), isTaken).toLocalFile();
        given.insert(place);
        ShelfItem item{.id = makeUuid(),
                       .content = {ShelfItem::File{place, {}, storage}},
                       .name = name,
                       .added = now};
        if (storage == ShelfStorage::moved)
            item.originalFolder = QFileInfo(standardized(original)).path();
        items.push_back(std::move(item));
    }
    return items;
}

} // namespace velmo
