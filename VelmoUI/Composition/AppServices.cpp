#include "VelmoUI/Composition/AppServices.h"

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
      settings(appPaths.settingsFile(), files, desktop.scheduler),
      activity(appPaths.activityHistoryFile(), files, desktop.scheduler,
               settings.settings().activityRetentionDays),
      permissions(desktop.permissions), notifier(desktop.notifications, desktop.scheduler),
      launchAtLogin(desktop.loginItem), hotKeyCenter(desktop.hotKeyGrabber),
      hotKeys(settings, hotKeyCenter, desktop.workspace, desktop.scheduler),
      timers(appPaths.supportFile(QStringLiteral("timers.json")), files, desktop.scheduler,
             activity, [this] { return settings.settings().pomodoro; }),
      notes(appPaths.supportFile(QStringLiteral("notes.json")), files, desktop.scheduler),
      clipboard(appPaths.supportFile(QStringLiteral("Clipboard")), files, desktop.scheduler),
      clipboardMonitor(clipboard, desktop.pasteboard, desktop.frontApplication, desktop.scheduler,
                       [this]() -> const AppSettings & { return settings.settings(); }),
      connectivity(desktop.network, desktop.bluetooth), jobs(activity, desktop.scheduler),
      shelf(shelfPlaces(appPaths), files, desktop.scheduler), dropUndo(desktop.scheduler),
      shelfMover(shelf, dropUndo, jobs, activity, desktop.scheduler),
      actionRunner(actions, activity, shelf), toolsWork(tools, jobs, activity, desktop.scheduler),
      m_retention(settings.observe([this](const AppSettings &before, const AppSettings &after) {
          if (before.activityRetentionDays == after.activityRetentionDays)
              return;
          activity.setRetentionDays(after.activityRetentionDays);
          activity.prune(platform.scheduler.now());
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
        .settings = settings,
        .activity = activity,
        .modules = modules,
        .files = files,
        .drop = {shelf, shelfMover, dropUndo, actionRunner, tools},
        .openSettings = [this](std::optional<SettingsPane> pane) { openSettings(pane); },
    };
}

SettingsServices AppServices::settingsWindow()
{
    return {platform, paths,       settings, hotKeys, launchAtLogin,
            modules,  permissions, activity, files,   dataProtection};
}

} // namespace velmo
