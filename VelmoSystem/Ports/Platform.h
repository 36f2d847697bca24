#pragma once

namespace velmo {

class Displays;
class DragPasteboard;
class FileViewer;
class HotKeyGrabber;
class MotionPreference;
class PanelWindowFactory;
class Pointer;
class Scheduler;
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
    MotionPreference &motionPreference;
};

} // namespace velmo
