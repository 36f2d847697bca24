#pragma once

namespace velmo {

class AppServices;

/// The callbacks between services, set once when all of them exist.
namespace ServiceWiring {

void start(AppServices &services);

/// Takes the user's wishes over to the clipboard's history.
void applyClipboardSettings(AppServices &services);
/// Removes what has lain on the shelf for longer than the user wants.
void cleanShelf(AppServices &services);

} // namespace ServiceWiring
} // namespace velmo
