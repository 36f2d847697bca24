#pragma once

#include "VelmoCore/Settings/SettingsPane.h"

#include <functional>
#include <optional>

namespace velmo {

class ActionRunner;
class ActivityCenter;
class DataFiles;
class DropUndo;
class MailBannerState;
class ModuleRegistry;
class SettingsStore;
class ShelfMover;
class ShelfStore;
class SignIns;
class ToolsSelection;
struct Platform;

/// What becomes of dropped things.
struct DropServices {
    ShelfStore &shelf;
    ShelfMover &mover;
    DropUndo &undo;
    ActionRunner &actions;
    ToolsSelection &tools;
};

/// What shows new mail.
struct BannerServices {
    MailBannerState &banner;
    SignIns &signIns;
};

/// What the panels of all screens work with.
struct PanelServices {
    const Platform &platform;
    SettingsStore &settings;
    ActivityCenter &activity;
    ModuleRegistry &modules;
    DataFiles &files;
    DropServices drop;
    BannerServices mail;
    std::function<void(std::optional<SettingsPane>)> openSettings;
};

} // namespace velmo
