#pragma once

#include "VelmoCore/Shelf/ShelfItem.h"

#include <QMimeData>

#include <memory>
#include <vector>

namespace velmo::ShelfDrag {

/// Files and links as URLs; texts, and links too, as text, a line each.
std::unique_ptr<QMimeData> mimeData(const std::vector<ShelfItem> &items);

/// What a target may do with them. Only what is ours to give may be moved: a reference's original
/// stays where it is.
Qt::DropActions actions(const std::vector<ShelfItem> &items);

} // namespace velmo::ShelfDrag
