#pragma once

#include "VelmoSystem/Mail/MailService.h"

namespace velmo {

class ActivityCenter;
class FileViewer;
class Pasteboard;

/// What the Mail module works with. All of it outlives the module.
struct MailServices {
    MailService &mail;
    ActivityCenter &activity;
    FileViewer &fileViewer;
    Pasteboard &pasteboard;
    Scheduler &scheduler;
};

} // namespace velmo
