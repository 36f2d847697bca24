#pragma once

#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoSystem/FileProcessing/ActionRunner.h"
#include "VelmoSystem/Shelf/ShelfMover.h"

namespace velmo {

/// What the shelf's page and card work with. All of them outlive the module.
struct ShelfServices {
    ShelfStore &shelf;
    ShelfMover &mover;
    ActionRunner &actions;
    Scheduler &scheduler;
};

} // namespace velmo
