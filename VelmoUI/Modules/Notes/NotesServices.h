#pragma once

#include "VelmoCore/Notes/NotesStore.h"
#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoSystem/Ports/Pasteboard.h"

namespace velmo {

/// What the notes' page and card work with. All of them outlive the module.
struct NotesServices {
    NotesStore &notes;
    FileViewer &fileViewer;
    Pasteboard &pasteboard;
    Scheduler &scheduler;
};

} // namespace velmo
