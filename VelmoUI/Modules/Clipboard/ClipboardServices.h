#pragma once

#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Clipboard/ClipboardMonitor.h"
#include "VelmoSystem/Ports/FileViewer.h"

namespace velmo {

/// What the clipboard's page and card work with. All of them outlive the module.
struct ClipboardServices {
    ClipboardStore &store;
    ClipboardMonitor &monitor;
    SettingsStore &settings;
    FileViewer &fileViewer;
    Scheduler &scheduler;
};

} // namespace velmo
