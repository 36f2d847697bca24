#pragma once

#include "VelmoCore/Notch/Route.h"
#include "VelmoCore/Settings/SettingsPane.h"
#include "VelmoCore/Storage/AppPaths.h"
#include "VelmoCore/Storage/DataFiles.h"
#include "VelmoSystem/Ports/Platform.h"
#include "VelmoSystem/Storage/DataProtectionStatus.h"

#include <QUrl>

#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace velmo {

class ActionCatalog;
class ActionRunner;
class ActivityCenter;
class CalendarService;
class ClipboardMonitor;
class ClipboardStore;
class ConnectivityService;
class DropUndo;
class GlobalHotKeyCenter;
class HotKeyController;
class JobCenter;
class LaunchAtLoginService;
class MailBannerState;
class MailNotices;
class MailService;
class MeetingActions;
class ModuleRegistry;
class NotesStore;
class PermissionsCenter;
class SettingsStore;
class ShelfMover;
class ShelfStore;
class SignIns;
class SystemNotifier;
class TimerCenter;
class ToolsSelection;
class ToolsWork;
struct PanelServices;
struct SettingsServices;

/// The single owner of every store and service, for the whole run. Later members may take earlier
/// ones, so their order is the order of creation. They are pointers, so that this header includes
/// none of them. Nothing but the composition knows it: a module gets what it works with. Main
/// thread only.
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
    const std::unique_ptr<SettingsStore> settings;
    const std::unique_ptr<ActivityCenter> activity;
    const std::unique_ptr<PermissionsCenter> permissions;
    const std::unique_ptr<SystemNotifier> notifier;
    const std::unique_ptr<LaunchAtLoginService> launchAtLogin;
    const std::unique_ptr<ActionCatalog> actions;
    const std::unique_ptr<GlobalHotKeyCenter> hotKeyCenter;
    const std::unique_ptr<HotKeyController> hotKeys;
    const std::unique_ptr<TimerCenter> timers;
    const std::unique_ptr<MeetingActions> meetings;
    const std::unique_ptr<NotesStore> notes;
    const std::unique_ptr<ClipboardStore> clipboard;
    const std::unique_ptr<ClipboardMonitor> clipboardMonitor;
    const std::unique_ptr<CalendarService> calendar;
    const std::unique_ptr<ConnectivityService> connectivity;
    const std::unique_ptr<JobCenter> jobs;
    const std::unique_ptr<ShelfStore> shelf;
    const std::unique_ptr<DropUndo> dropUndo;
    const std::unique_ptr<ShelfMover> shelfMover;
    const std::unique_ptr<ActionRunner> actionRunner;
    const std::unique_ptr<ToolsSelection> tools;
    const std::unique_ptr<ToolsWork> toolsWork;
    const std::unique_ptr<MailService> mail;
    const std::unique_ptr<SignIns> signIns;
    const std::unique_ptr<MailBannerState> mailBanner;
    const std::unique_ptr<MailNotices> mailNotices;
    const std::unique_ptr<ModuleRegistry> modules; ///< goes first

    /// Views and services call upward through these only. Until the panels exist they do nothing.
    std::function<void(std::optional<SettingsPane>)> openSettings = [](auto) {};
    std::function<void()> showNotch = [] {};
    std::function<void(const QString &moduleID)> openModule = [](const QString &) {};
    std::function<void(const Route &)> openRoute = [](const Route &) {};
    std::function<bool()> isPanelOpen = [] { return false; };
    std::function<bool()> isPanelShown = [] { return false; };
    std::function<void()> openSearch = [] {};
    std::function<void(const std::vector<QUrl> &)> openFilesInNotch = [](const auto &) {};
    std::function<void()> openRadial = [] {};

private:
    std::shared_ptr<const void> m_retention; ///< takes the history's length from the settings
};

} // namespace velmo
