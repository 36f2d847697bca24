#pragma once

#include "VelmoCore/Files/PendingFiles.h"

namespace velmo {

class AppServices;

/// The callbacks between services, set once when all of them exist.
namespace ServiceWiring {

void start(AppServices &services);
/// Once a thread has restored what a killed run left; where there is such, the shelf keeps what it
/// doesn't find until then.
void finishRestoring(AppServices &services, const PendingFiles::Restored &restored);

/// Takes the user's wishes over to the clipboard's history.
void applyClipboardSettings(AppServices &services);
/// Removes what has lain on the shelf for longer than the user wants.
void cleanShelf(AppServices &services);

} // namespace ServiceWiring
} // namespace velmo
