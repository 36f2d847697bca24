#pragma once

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Settings/SettingsPane.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Storage/DataFiles.h"
#include "VelmoSystem/FileProcessing/ActionRunner.h"
#include "VelmoSystem/FileProcessing/ToolsSelection.h"
#include "VelmoSystem/Ports/Platform.h"
#include "VelmoSystem/Shelf/ShelfMover.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

#include <functional>
#include <optional>

namespace velmo {

/// What becomes of dropped things.
struct DropServices {
    ShelfStore &shelf;
    ShelfMover &mover;
    DropUndo &undo;
    ActionRunner &actions;
    ToolsSelection &tools;
};

/// What the panels of all screens work with.
struct PanelServices {
    const Platform &platform;
    SettingsStore &settings;
    ActivityCenter &activity;
    ModuleRegistry &modules;
    DataFiles &files;
    DropServices drop;
    std::function<void(std::optional<SettingsPane>)> openSettings;
};

} // namespace velmo
