#include "VelmoUI/Composition/AppServices.h"

#include "VelmoCore/Actions/ActionCatalog.h"
#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoCore/Notes/NotesStore.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Shelf/DropUndo.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoCore/Timers/TimerCenter.h"
#include "VelmoSystem/Calendar/CalendarService.h"
#include "VelmoSystem/Clipboard/ClipboardMonitor.h"
#include "VelmoSystem/Device/ConnectivityService.h"
#include "VelmoSystem/Device/LaunchAtLoginService.h"
#include "VelmoSystem/FileProcessing/ActionRunner.h"
#include "VelmoSystem/FileProcessing/ToolsWork.h"
#include "VelmoSystem/Input/GlobalHotKeyCenter.h"
#include "VelmoSystem/Input/HotKeyController.h"
#include "VelmoSystem/Mail/MailBannerState.h"
#include "VelmoSystem/Mail/MailNotices.h"
#include "VelmoSystem/Mail/MailService.h"
#include "VelmoSystem/Mail/SignIns.h"
#include "VelmoSystem/Meetings/MeetingActions.h"
#include "VelmoSystem/Notifications/SystemNotifier.h"
#include "VelmoSystem/Permissions/PermissionsCenter.h"
#include "VelmoSystem/Shelf/ShelfMover.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"
#include "VelmoUI/Notch/PanelServices.h"
#include "VelmoUI/Settings/SettingsServices.h"

#include <QDir>
#include <QStandardPaths>

namespace velmo {

namespace {

/// Only the user's real data gets a folder of the user's: a self-test leaves the home alone.
ShelfStore::Places shelfPlaces(const AppPaths &paths)
{
    ShelfStore::Places places{
        .directory = paths.supportFile(QStringLiteral("Shelf")),
        .notchFolder = std::nullopt,
        .downloads = QStandardPaths::writableLocation(QStandardPaths::DownloadLocation),
    };
    if (paths.support.contains(u"/.local/share/"))
        places.notchFolder = QDir::home().filePath(QStringLiteral("No Notch"));
    return places;
}

} // namespace

AppServices::AppServices(const AppPaths &appPaths, const DataProtectionStatus &protection,
                         const Platform &desktop)
    : platform(desktop), paths(appPaths), dataProtection(protection), files(protection.files()),
      settings(std::make_unique<SettingsStore>(appPaths.settingsFile(), files, desktop.scheduler)),
      activity(std::make_unique<ActivityCenter>(appPaths.activityHistoryFile(), files,
                                                desktop.scheduler,
                                                settings->settings().activityRetentionDays)),
      permissions(std::make_unique<PermissionsCenter>(desktop.permissions)),
      notifier(std::make_unique<SystemNotifier>(desktop.notifications, desktop.scheduler)),
      launchAtLogin(std::make_unique<LaunchAtLoginService>(desktop.loginItem)),
      actions(std::make_unique<ActionCatalog>()),
      hotKeyCenter(std::make_unique<GlobalHotKeyCenter>(desktop.hotKeyGrabber)),
      hotKeys(std::make_unique<HotKeyController>(*settings, *hotKeyCenter, desktop.workspace,
                                                 desktop.scheduler)),
      timers(std::make_unique<TimerCenter>(appPaths.supportFile(QStringLiteral("timers.json")),
                                           files, desktop.scheduler, *activity,
                                           [this] { return settings->settings().pomodoro; })),
      meetings(std::make_unique<MeetingActions>(desktop.browserWindows, desktop.captureDevices,
                                                *activity, desktop.scheduler)),
      notes(std::make_unique<NotesStore>(appPaths.supportFile(QStringLiteral("notes.json")), files,
                                         desktop.scheduler)),
      clipboard(std::make_unique<ClipboardStore>(appPaths.supportFile(QStringLiteral("Clipboard")),
                                                 files, desktop.scheduler)),
      clipboardMonitor(std::make_unique<ClipboardMonitor>(
          *clipboard, desktop.pasteboard, desktop.frontApplication, desktop.scheduler,
          [this]() -> const AppSettings & { return settings->settings(); })),
      calendar(std::make_unique<CalendarService>(
          appPaths.supportFile(QStringLiteral("calendar-subscriptions.json")), files,
          desktop.scheduler, desktop.calendars, desktop.downloads, desktop.workspace)),
      connectivity(std::make_unique<ConnectivityService>(desktop.network, desktop.bluetooth)),
      jobs(std::make_unique<JobCenter>(*activity, desktop.scheduler)),
      shelf(std::make_unique<ShelfStore>(shelfPlaces(appPaths), files, desktop.scheduler)),
      dropUndo(std::make_unique<DropUndo>(desktop.scheduler)),
      shelfMover(
          std::make_unique<ShelfMover>(*shelf, *dropUndo, *jobs, *activity, desktop.scheduler)),
      actionRunner(std::make_unique<ActionRunner>(*actions, *activity, *shelf)),
      tools(std::make_unique<ToolsSelection>()),
      toolsWork(std::make_unique<ToolsWork>(*tools, *jobs, *activity, desktop.scheduler)),
      mail(std::make_unique<MailService>(appPaths.supportFile(QStringLiteral("mail-accounts.json")),
                                         files, desktop.scheduler, desktop.servers, desktop.network,
                                         desktop.workspace)),
      signIns(std::make_unique<SignIns>(*mail, desktop.pasteboard, desktop.fileViewer, *activity,
                                        desktop.scheduler)),
      mailBanner(std::make_unique<MailBannerState>(desktop.scheduler)),
      mailNotices(std::make_unique<MailNotices>(*notifier, *signIns)),
      modules(std::make_unique<ModuleRegistry>()),
      m_retention(settings->observe([this](const AppSettings &before, const AppSettings &after) {
          if (before.activityRetentionDays == after.activityRetentionDays)
              return;
          activity->setRetentionDays(after.activityRetentionDays);
          activity->prune(platform.scheduler.now());
      }))
{
}

AppServices::~AppServices()
{
    files.abandonKey();
}

void AppServices::flush()
{
    files.flush();
}

void AppServices::setProtection(const DataProtectionStatus &protection)
{
    dataProtection = protection;
    files.setKey(protection.cipher());
}

PanelServices AppServices::panels()
{
    return {
        .platform = platform,
        .settings = *settings,
        .activity = *activity,
        .modules = *modules,
        .files = files,
        .drop = {*shelf, *shelfMover, *dropUndo, *actionRunner, *tools},
        .mail = {*mailBanner, *signIns},
        .openSettings = [this](std::optional<SettingsPane> pane) { openSettings(pane); },
    };
}

SettingsServices AppServices::settingsWindow()
{
    return {platform, paths,        *settings, *hotKeys, *launchAtLogin,
            *modules, *permissions, *activity, files,    dataProtection};
}

} // namespace velmo
