#pragma once

#include "VelmoSystem/Linux/Calendar/EvolutionStore.h"
#include "VelmoSystem/Linux/DBus/AccessibleWebPageButton.h"
#include "VelmoSystem/Linux/DBus/AppearancePortal.h"
#include "VelmoSystem/Linux/DBus/DBusNotifications.h"
#include "VelmoSystem/Linux/DBus/FileManagerViewer.h"
#include "VelmoSystem/Linux/DBus/SleepMonitor.h"
#include "VelmoSystem/Linux/Desktop/CanberraPlayer.h"
#include "VelmoSystem/Linux/Desktop/DesktopApplications.h"
#include "VelmoSystem/Linux/Desktop/DesktopPermissions.h"
#include "VelmoSystem/Linux/Desktop/DesktopShare.h"
#include "VelmoSystem/Linux/Desktop/DesktopStatusArea.h"
#include "VelmoSystem/Linux/Desktop/DesktopThumbnailer.h"
#include "VelmoSystem/Linux/Desktop/XdgAutostart.h"
#include "VelmoSystem/Linux/Device/BlueZAdapter.h"
#include "VelmoSystem/Linux/Device/LinuxCaptureDevices.h"
#include "VelmoSystem/Linux/Device/NetworkManagerMonitor.h"
#include "VelmoSystem/Linux/Device/ProcMachineLoad.h"
#include "VelmoSystem/Linux/Device/UPowerDevices.h"
#include "VelmoSystem/Linux/Net/HttpsDownloader.h"
#include "VelmoSystem/Linux/Net/LinuxServerAccess.h"
#include "VelmoSystem/Linux/X11/X11BrowserWindows.h"
#include "VelmoSystem/Linux/X11/X11Connection.h"
#include "VelmoSystem/Linux/X11/X11Displays.h"
#include "VelmoSystem/Linux/X11/X11DragPasteboard.h"
#include "VelmoSystem/Linux/X11/X11FrontApplication.h"
#include "VelmoSystem/Linux/X11/X11HotKeyGrabber.h"
#include "VelmoSystem/Linux/X11/X11PanelWindow.h"
#include "VelmoSystem/Linux/X11/X11Pasteboard.h"
#include "VelmoSystem/Linux/X11/X11Pointer.h"
#include "VelmoSystem/Linux/X11/X11Workspace.h"
#include "VelmoSystem/Ports/Platform.h"

namespace velmo {

/// The adapters of an X11 session, in the order in which they need each other.
class LinuxPlatform {
public:
    /// Needs a QGuiApplication. Throws `LocalizedError` without an X server.
    explicit LinuxPlatform(Scheduler &scheduler);

    /// What the first frame doesn't need.
    void startRest();

    Platform ports();
    /// The text that is selected somewhere; its changes aren't reported.
    Pasteboard &primarySelection() { return m_primarySelection; }

private:
    Scheduler &m_scheduler;
    X11Connection m_connection;
    X11Displays m_displays;
    X11Pointer m_pointer;
    X11DragPasteboard m_dragPasteboard;
    X11HotKeyGrabber m_hotKeyGrabber;
    X11Workspace m_workspace;
    X11PanelWindowFactory m_panelWindows;
    FileManagerViewer m_fileViewer;
    AppearancePortal m_appearance;
    SleepMonitor m_sleep;
    UPowerDevices m_powerDevices;
    UPowerBattery m_power;
    UPowerAccessories m_accessories;
    NetworkManagerMonitor m_network;
    BlueZAdapter m_bluetooth;
    ProcMachineLoad m_load;
    DesktopApplications m_applications;
    DesktopPermissions m_permissions;
    DBusNotifications m_notifications;
    CanberraPlayer m_sounds;
    XdgAutostart m_loginItem;
    DesktopStatusArea m_statusArea;
    X11Pasteboard m_pasteboard;
    X11Pasteboard m_primarySelection;
    X11FrontApplication m_frontApplication;
    DesktopShare m_share;
    LinuxServerAccess m_servers;
    HttpsDownloader m_downloads{m_servers.thread(), m_scheduler};
    EvolutionStore m_calendars;
    DesktopThumbnailer m_thumbnailer{DesktopThumbnailer::standardCacheFolder()};
    X11BrowserWindows m_browserWindows{m_connection, m_workspace};
    LinuxCaptureDevices m_captureDevices{m_scheduler};
    AccessibleWebPageButton m_webPageButton{QDBusConnection::sessionBus(), m_scheduler};
};

} // namespace velmo
