#pragma once

#include "VelmoSystem/Mail/MailService.h"

namespace velmo {

class ActivityCenter;
class FileViewer;
class SignIns;

/// What the Mail module works with. All of it outlives the module.
struct MailServices {
    MailService &mail;
    SignIns &signIns;
    ActivityCenter &activity;
    FileViewer &fileViewer;
    Scheduler &scheduler;
};

} // namespace velmo
