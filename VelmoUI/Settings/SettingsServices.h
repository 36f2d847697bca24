#pragma once

#include "VelmoSystem/Storage/DataProtectionStatus.h"

namespace velmo {

class ActivityCenter;
class HotKeyController;
class LaunchAtLoginService;
class ModuleRegistry;
class PermissionsCenter;
class SettingsStore;
struct AppPaths;
struct Platform;

/// What the panes of the settings window work with. All of them outlive it.
struct SettingsServices {
    const Platform &platform;
    const AppPaths &paths;
    SettingsStore &settings;
    HotKeyController &hotKeys;
    LaunchAtLoginService &launchAtLogin;
    ModuleRegistry &modules;
    PermissionsCenter &permissions;
    ActivityCenter &activity;
    DataFiles &files;
    const DataProtectionStatus &dataProtection;
};

} // namespace velmo
