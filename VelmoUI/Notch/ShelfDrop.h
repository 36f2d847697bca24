#pragma once

#include "VelmoCore/Shelf/DroppedItem.h"
#include "VelmoUI/Notch/ShelfTransfer.h"

#include <optional>
#include <vector>

namespace velmo {

class AppServices;

/// Puts dropped things on the shelf: links and texts at once, files by a job that moves them into
/// the notch's folder, whose id these give. Application bundles and what is there already stay
/// where they are.
namespace ShelfDrop {

using Moved = ShelfTransfer::Moved;
using Finished = ShelfTransfer::Finished;

std::optional<QString> moveIn(AppServices &services, const std::vector<DroppedItem> &items,
                              const Moved &moved, const Finished &finished);

/// Also tells that it did where nothing has to move.
std::optional<QString> keep(AppServices &services, const std::vector<DroppedItem> &items,
                            const Moved &moved, const Finished &finished);

} // namespace ShelfDrop
} // namespace velmo
