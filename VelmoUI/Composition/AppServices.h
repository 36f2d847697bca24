#pragma once

#include "VelmoCore/Actions/ActionCatalog.h"
#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoCore/Notes/NotesStore.h"
#include "VelmoCore/Settings/SettingsPane.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Shelf/DropUndo.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoCore/Storage/AppPaths.h"
#include "VelmoCore/Timers/TimerCenter.h"
#include "VelmoSystem/Clipboard/ClipboardMonitor.h"
#include "VelmoSystem/Device/ConnectivityService.h"
#include "VelmoSystem/Device/LaunchAtLoginService.h"
#include "VelmoSystem/FileProcessing/ActionRunner.h"
#include "VelmoSystem/FileProcessing/ToolsWork.h"
#include "VelmoSystem/Input/GlobalHotKeyCenter.h"
#include "VelmoSystem/Input/HotKeyController.h"
#include "VelmoSystem/Notifications/SystemNotifier.h"
#include "VelmoSystem/Permissions/PermissionsCenter.h"
#include "VelmoSystem/Ports/Platform.h"
#include "VelmoSystem/Shelf/ShelfMover.h"
#include "VelmoSystem/Storage/DataProtectionStatus.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Notch/PanelServices.h"
#include "VelmoUI/Settings/SettingsServices.h"

#include <QUrl>

#include <functional>
#include <optional>
#include <vector>

namespace velmo {

/// The single owner of every store and service, for the whole run. Later members may take earlier
/// ones, so their order is the order of creation. Nothing but the composition knows it: a module
/// gets what it works with. Main thread only.
class AppServices {
public:
    /// Loads what is on disk, but what is sealed only when its key comes. `platform`'s objects
    /// outlive this one.
    AppServices(const AppPaths &paths, const DataProtectionStatus &protection,
                const Platform &platform);
    /// Lets go of whoever waits for the key.
    ~AppServices();
    Q_DISABLE_COPY_MOVE(AppServices)

    /// Saves what still waits to be saved.
    void flush();
    /// Opens what is sealed with a key that came late, or ends the waiting for it.
    void setProtection(const DataProtectionStatus &protection);
    /// What of this the panels work with.
    PanelServices panels();
    /// And the settings window.
    SettingsServices settingsWindow();

    const Platform platform;
    const AppPaths paths;
    DataProtectionStatus dataProtection;
    DataFiles files; ///< who of the stores keeps what
    SettingsStore settings;
    ActivityCenter activity;
    PermissionsCenter permissions;
    SystemNotifier notifier;
    LaunchAtLoginService launchAtLogin;
    ActionCatalog actions;
    GlobalHotKeyCenter hotKeyCenter;
    HotKeyController hotKeys;
    TimerCenter timers;
    NotesStore notes;
    ClipboardStore clipboard;
    ClipboardMonitor clipboardMonitor;
    ConnectivityService connectivity;
    JobCenter jobs;
    ShelfStore shelf;
    DropUndo dropUndo;
    ShelfMover shelfMover;
    ActionRunner actionRunner;
    ToolsSelection tools;
    ToolsWork toolsWork;
    ModuleRegistry modules; ///< goes first

    /// Views and services call upward through these only. Until the panels exist they do nothing.
    std::function<void(std::optional<SettingsPane>)> openSettings = [](auto) {};
    std::function<void()> showNotch = [] {};
    std::function<void(const QString &moduleID)> openModule = [](const QString &) {};
    std::function<bool()> isPanelOpen = [] { return false; };
    std::function<void()> openSearch = [] {};
    std::function<void(const std::vector<QUrl> &)> openFilesInNotch = [](const auto &) {};
    std::function<void()> openRadial = [] {};

private:
    SettingsStore::Observation m_retention;
};

} // namespace velmo
