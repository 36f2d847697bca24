#pragma once

#include "VelmoCore/Shelf/DroppedItem.h"
#include "VelmoCore/Shelf/ShelfStorage.h"
#include "VelmoUI/Notch/ShelfTransfer.h"

#include <vector>

namespace velmo {

class AppServices;

/// Puts dropped things on the shelf. What only needs another name is there when these return; what
/// lies on another file system, and every copy, comes by a job. Failures become events.
namespace ShelfDrop {

using Moved = ShelfTransfer::Moved;

/// Moves files into the notch's folder. Application bundles and what is there already stay where
/// they are.
void moveIn(AppServices &services, const std::vector<DroppedItem> &items, const Moved &moved);

/// Keeps files as `storage` says, and tells that it did.
void keep(AppServices &services, const std::vector<DroppedItem> &items, ShelfStorage storage,
          const Moved &moved);

} // namespace ShelfDrop
} // namespace velmo
