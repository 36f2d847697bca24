#pragma once

#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoSystem/Control/VerbTable.h"

/// The shelf for scripts.
namespace velmo::ShelfVerbs {

/// How files come onto the shelf and things leave it. Both give the id of the job that moves files;
/// nothing where none has to move, or all of it is done.
struct Transfers {
    std::function<std::optional<QString>(const std::vector<QUrl> &files)> bringIn;
    /// Moved files go home.
    std::function<std::optional<QString>(const std::vector<Uuid> &items)> takeOff;
};

std::vector<VerbSyntax> syntaxes();
std::vector<Verb> make(ShelfStore &store, const Transfers &transfers, JobCenter &jobs,
                       ActivityCenter &activity);
/// Until `listener` goes.
void connectChanges(const ShelfStore &store, const QObject *listener,
                    const VerbTable::Changed &changed);

} // namespace velmo::ShelfVerbs
