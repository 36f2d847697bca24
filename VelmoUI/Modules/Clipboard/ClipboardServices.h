#pragma once

namespace velmo {

class ClipboardMonitor;
class ClipboardStore;
class FileViewer;
class Scheduler;
class SettingsStore;

/// What the clipboard's page and card work with. All of them outlive the module.
struct ClipboardServices {
    ClipboardStore &store;
    ClipboardMonitor &monitor;
    SettingsStore &settings;
    FileViewer &fileViewer;
    Scheduler &scheduler;
};

} // namespace velmo
