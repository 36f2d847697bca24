#pragma once

#include "VelmoCore/Shelf/DroppedItem.h"
#include "VelmoCore/Shelf/ShelfStorage.h"
#include "VelmoUI/Notch/ShelfTransfer.h"

#include <optional>
#include <vector>

namespace velmo {

class AppServices;

/// Puts dropped things on the shelf. What only needs another name is there when these return; what
/// lies on another file system, and every copy, comes by a job, whose id they give then. Failures
/// become events.
namespace ShelfDrop {

using Moved = ShelfTransfer::Moved;

/// Moves files into the notch's folder. Application bundles and what is there already stay where
/// they are.
std::optional<QString> moveIn(AppServices &services, const std::vector<DroppedItem> &items,
                              const Moved &moved);

/// Keeps files as `storage` says, and tells that it did.
std::optional<QString> keep(AppServices &services, const std::vector<DroppedItem> &items,
                            ShelfStorage storage, const Moved &moved);

} // namespace ShelfDrop
} // namespace velmo
