#pragma once

namespace velmo {

class AppServices;

/// The callbacks between services, set once when all of them exist.
namespace ServiceWiring {

void start(AppServices &services);

} // namespace ServiceWiring
} // namespace velmo
