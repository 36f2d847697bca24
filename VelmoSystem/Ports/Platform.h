#pragma once

namespace velmo {

class Accessories;
class Applications;
class BluetoothAdapter;
class BrowserWindows;
class CalendarStore;
class CaptureDevices;
class DesktopAppearance;
class Displays;
class Downloader;
class DragPasteboard;
class FileViewer;
class FrontApplication;
class HotKeyGrabber;
class LoginItem;
class MachineLoad;
class NetworkMonitor;
class NotificationServer;
class PanelWindowFactory;
class Pasteboard;
class PermissionSource;
class Pointer;
class PowerInfo;
class Scheduler;
class ServerAccess;
class ShareService;
class SoundPlayer;
class StatusArea;
class Thumbnailer;
class WebPageButton;
class Workspace;

/// Everything Orvane needs of the desktop it runs on. The objects outlive whoever is given this.
struct Platform {
    Scheduler &scheduler;
    Displays &displays;
    Pointer &pointer;
    DragPasteboard &dragPasteboard;
    HotKeyGrabber &hotKeyGrabber;
    Workspace &workspace;
    PanelWindowFactory &panelWindows;
    FileViewer &fileViewer;
    DesktopAppearance &appearance;
    PowerInfo &power;
    Accessories &accessories;
    NetworkMonitor &network;
    BluetoothAdapter &bluetooth;
    MachineLoad &load;
    Applications &applications;
    PermissionSource &permissions;
    NotificationServer &notifications;
    SoundPlayer &sounds;
    LoginItem &loginItem;
    StatusArea &statusArea;
    Pasteboard &pasteboard;
    ShareService &share;
    Thumbnailer &thumbnailer;
    FrontApplication &frontApplication;
    ServerAccess &servers;
    Downloader &downloads;
    CalendarStore &calendars;
    BrowserWindows &browserWindows;
    CaptureDevices &captureDevices;
    WebPageButton &webPageButton;
};

} // namespace velmo
