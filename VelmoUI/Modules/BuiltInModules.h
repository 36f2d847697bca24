#pragma once

namespace velmo {

class ModuleRegistry;

/// Orvane's own modules, in the order in which they show unless the user has one.
void addBuiltInModules(ModuleRegistry &modules);

} // namespace velmo
