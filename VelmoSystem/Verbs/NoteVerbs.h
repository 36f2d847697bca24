#pragma once

#include "VelmoCore/Notes/NotesStore.h"
#include "VelmoSystem/Control/VerbTable.h"

/// Notes and tasks for scripts.
namespace velmo::NoteVerbs {

std::vector<VerbSyntax> syntaxes();
std::vector<Verb> make(NotesStore &store, const Scheduler &scheduler);
/// Until `listener` goes.
void connectChanges(const NotesStore &store, const QObject *listener,
                    const VerbTable::Changed &changed);

} // namespace velmo::NoteVerbs
