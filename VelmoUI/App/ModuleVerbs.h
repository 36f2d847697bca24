#pragma once

#include "VelmoSystem/Control/VerbTable.h"

namespace velmo {

class AppServices;

/// The verbs of all modules, and the services that each works with.
namespace ModuleVerbs {

std::vector<Verb> make(AppServices &services);
/// Until `listener` goes.
void connectChanges(const AppServices &services, const QObject *listener,
                    const VerbTable::Changed &changed);

} // namespace ModuleVerbs
} // namespace velmo
