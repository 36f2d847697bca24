#include "VelmoUI/App/ModuleVerbs.h"

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/Modules/Activity/ActivityVerbs.h"
#include "VelmoUI/Modules/Clipboard/ClipboardVerbs.h"
#include "VelmoUI/Modules/Notes/NoteVerbs.h"
#include "VelmoUI/Modules/Shelf/ShelfVerbs.h"
#include "VelmoUI/Modules/Timers/TimerVerbs.h"
#include "VelmoUI/Modules/Tools/FilesVerbs.h"
#include "VelmoUI/Notch/ShelfDrop.h"

namespace velmo {

namespace {

template <class List>
void append(List &all, const List &more)
{
    all.insert(all.end(), more.begin(), more.end());
}

ShelfVerbs::Transfers transfersOf(AppServices &services)
{
    const auto bringIn = [&services](const std::vector<QUrl> &files) {
        std::vector<DroppedItem> items;
        items.reserve(files.size());
        for (const QUrl &file : files)
            items.push_back({DroppedItem::File{file}});
        return ShelfDrop::moveIn(
            services, items, [](const auto &) {}, [](bool) {});
    };
    const auto takeOff = [&services](const std::vector<Uuid> &items) {
        return takeOffShelf(services, items);
    };
    return {bringIn, takeOff};
}

} // namespace

std::vector<Verb> ModuleVerbs::make(AppServices &services)
{
    const Scheduler &scheduler = services.platform.scheduler;
    std::vector<Verb> all;
    append(all, ClipboardVerbs::make(services.clipboard, services.clipboardMonitor, scheduler));
    append(all, ShelfVerbs::make(services.shelf, transfersOf(services), services.jobs,
                                 services.activity));
    append(all, NoteVerbs::make(services.notes, scheduler));
    append(all, TimerVerbs::make(services.timers, scheduler));
    append(all, FilesVerbs::make(services.jobs, services.activity, scheduler));
    append(all, ActivityVerbs::make(services.activity));
    return all;
}

void ModuleVerbs::connectChanges(const AppServices &services, const QObject *listener,
                                 const VerbTable::Changed &changed)
{
    ClipboardVerbs::connectChanges(services.clipboard, listener, changed);
    ShelfVerbs::connectChanges(services.shelf, listener, changed);
    NoteVerbs::connectChanges(services.notes, listener, changed);
    TimerVerbs::connectChanges(services.timers, listener, changed);
    ActivityVerbs::connectChanges(services.activity, listener, changed);
}

} // namespace velmo
