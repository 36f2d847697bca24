#pragma once

#include "VelmoSystem/Mail/MailService.h"

#include <functional>

namespace velmo {

class ActivityCenter;
class FileViewer;
class Pasteboard;
class SettingsStore;
class SoundPlayer;

/// What the Mail module works with. All of it outlives the module.
struct MailServices {
    MailService &mail;
    SettingsStore &settings;
    ActivityCenter &activity;
    FileViewer &fileViewer;
    Pasteboard &pasteboard;
    SoundPlayer &sounds;
    Scheduler &scheduler;
};

} // namespace velmo
