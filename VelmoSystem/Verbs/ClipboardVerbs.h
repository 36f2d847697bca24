#pragma once

#include "VelmoSystem/Control/VerbTable.h"

namespace velmo {

class ClipboardMonitor;
class ClipboardStore;
class Scheduler;

/// The clipboard's history for scripts.
namespace ClipboardVerbs {

std::vector<VerbSyntax> syntaxes();
std::vector<Verb> make(ClipboardStore &store, ClipboardMonitor &monitor,
                       const Scheduler &scheduler);
/// Until `listener` goes.
void connectChanges(const ClipboardStore &store, const QObject *listener,
                    const VerbTable::Changed &changed);

} // namespace ClipboardVerbs
} // namespace velmo
