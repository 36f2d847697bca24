#pragma once

#include "VelmoCore/Shelf/ShelfItem.h"
#include "VelmoUI/Modules/NotchModule.h"

#include <vector>

namespace velmo::ShelfOpening {

/// Opens files and links with the desktop's applications for them and copies texts; closes the
/// panel once something opens. Gives what the user is to be told, if anything.
QString open(const std::vector<ShelfItem> &items, const ModuleContext &context);

} // namespace velmo::ShelfOpening
