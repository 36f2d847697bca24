#pragma once

#include "VelmoCore/Shelf/ShelfItem.h"

#include <stop_token>
#include <vector>

namespace velmo::ShelfArrivals {

/// Items for files that are to come into `folder`, which is made where it is missing; each has a
/// place of its own that is free. For any thread: it asks the disk. Throws `FileError`,
/// `Cancelled`.
std::vector<ShelfItem> plan(const std::vector<QUrl> &originals, const QString &folder,
                            ShelfStorage storage, Date now, const std::stop_token &stop = {});

} // namespace velmo::ShelfArrivals
