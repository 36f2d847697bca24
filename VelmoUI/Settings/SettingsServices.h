#pragma once

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Storage/AppPaths.h"
#include "VelmoSystem/Device/LaunchAtLoginService.h"
#include "VelmoSystem/Input/HotKeyController.h"
#include "VelmoSystem/Permissions/PermissionsCenter.h"
#include "VelmoSystem/Ports/Platform.h"
#include "VelmoSystem/Storage/DataProtectionStatus.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

namespace velmo {

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
