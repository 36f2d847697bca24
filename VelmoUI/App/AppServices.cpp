#include "VelmoUI/App/AppServices.h"

namespace velmo {

AppServices::AppServices(const AppPaths &appPaths, const DataProtectionStatus &protection,
                         const Platform &desktop)
    : platform(desktop), paths(appPaths), dataProtection(protection),
      settings(appPaths.settingsFile(), desktop.scheduler),
      activity(desktop.scheduler,
               ActivityCenter::Store(appPaths.activityHistoryFile(), protection.cipher()),
               settings.settings().activityRetentionDays),
      permissions(desktop.permissions), notifier(desktop.notifications, desktop.scheduler),
      launchAtLogin(desktop.loginItem), hotKeyCenter(desktop.hotKeyGrabber),
      hotKeys(settings, hotKeyCenter), connectivity(desktop.network, desktop.bluetooth)
{
    settings.observe([this](const AppSettings &before, const AppSettings &after) {
        if (before.activityRetentionDays == after.activityRetentionDays)
            return;
        activity.setRetentionDays(after.activityRetentionDays);
        activity.prune(platform.scheduler.now());
    });
}

void AppServices::flush()
{
    settings.flush();
    activity.flush();
}

} // namespace velmo
