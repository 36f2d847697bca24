#pragma once

#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoSystem/Control/VerbTable.h"
#include "VelmoSystem/Shelf/ShelfMover.h"

/// The shelf for scripts.
namespace velmo::ShelfVerbs {

std::vector<VerbSyntax> syntaxes();
std::vector<Verb> make(ShelfStore &store, ShelfMover &mover, JobCenter &jobs,
                       ActivityCenter &activity);
/// Until `listener` goes.
void connectChanges(const ShelfStore &store, const QObject *listener,
                    const VerbTable::Changed &changed);

} // namespace velmo::ShelfVerbs
