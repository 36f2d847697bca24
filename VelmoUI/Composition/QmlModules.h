#pragma once

namespace velmo {

/// Makes the types of Orvane's QML modules known to all engines. Once, before the first engine.
void registerQmlModules();

} // namespace velmo
