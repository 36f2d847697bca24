#pragma once

#include "VelmoUI/Modules/Frame/NotchModule.h"

namespace velmo {

class AppServices;

/// Orvane's own modules, in the order in which they show unless the user has one. Each gets what it
/// works with. `services` outlives them.
std::vector<std::unique_ptr<NotchModule>> makeBuiltInModules(AppServices &services);

/// How all verbs are written: what the command line and the bus know of them without a module.
std::vector<VerbSyntax> builtInVerbSyntaxes();

} // namespace velmo
