#pragma once

#include "VelmoCore/Files/PendingFiles.h"

namespace velmo {

class AppServices;

/// What connects services with each other, and begins with the application.
namespace ServiceWiring {

/// Sets the callbacks between services, then starts the modules. Once, when all of them exist.
void start(AppServices &services);
/// Once a thread has restored what a killed run left; where there is such, the shelf keeps what it
/// doesn't find until then.
void finishRestoring(AppServices &services, const PendingFiles::Restored &restored);

} // namespace ServiceWiring
} // namespace velmo
