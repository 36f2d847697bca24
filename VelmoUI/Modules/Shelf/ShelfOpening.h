#pragma once

#include "VelmoUI/Modules/Frame/PanelPort.h"
#include "VelmoUI/Modules/Shelf/ShelfServices.h"

namespace velmo::ShelfOpening {

/// Opens files and links with the desktop's applications for them and copies texts; closes the
/// panel once something opens. Gives what the user is to hear, if anything.
QString open(const std::vector<ShelfItem> &items, const ShelfServices &services, PanelPort &panel);

} // namespace velmo::ShelfOpening
