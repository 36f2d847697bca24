#pragma once

#include "VelmoCore/Shelf/DroppedItem.h"

#include <vector>

class QMimeData;

namespace velmo::DropReader {

/// Files first, then links, both in the order of the source and each once; if there are neither,
/// the text, as a link if it is one web address and nothing else.
std::vector<DroppedItem> items(const QMimeData &data);

} // namespace velmo::DropReader
