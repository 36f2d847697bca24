#pragma once

#include "VelmoSystem/Control/Verb.h"

#include <vector>

namespace velmo {

class ModuleRegistry;

/// Orvane's own modules, in the order in which they show unless the user has one.
void addBuiltInModules(ModuleRegistry &modules);

/// How all verbs are written: what the command line and the bus know of them without a module.
std::vector<VerbSyntax> builtInVerbSyntaxes();

} // namespace velmo
