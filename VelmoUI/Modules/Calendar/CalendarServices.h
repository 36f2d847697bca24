#pragma once

#include "VelmoSystem/Calendar/CalendarService.h"

namespace velmo {

class ActivityCenter;
class FileViewer;
class NotesStore;
class PermissionSource;

/// What the Calendar module works with. All of it outlives the module.
struct CalendarServices {
    CalendarService &calendar;
    NotesStore &notes;
    ActivityCenter &activity;
    FileViewer &fileViewer;
    PermissionSource &permissions;
    Scheduler &scheduler;
};

} // namespace velmo
