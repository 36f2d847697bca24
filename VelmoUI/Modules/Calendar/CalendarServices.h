#pragma once

#include "VelmoSystem/Calendar/CalendarService.h"

namespace velmo {

class ActivityCenter;
class Applications;
class FileViewer;
class NotesStore;
class PermissionSource;

/// What the Calendar module works with. All of it outlives the module.
struct CalendarServices {
    CalendarService &calendar;
    NotesStore &notes;
    ActivityCenter &activity;
    FileViewer &fileViewer;
    Applications &applications;
    PermissionSource &permissions;
    Scheduler &scheduler;
};

} // namespace velmo
