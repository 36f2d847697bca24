#pragma once

#include "VelmoCore/Foundation/Scheduler.h"

namespace velmo {

/// A thread with an event loop for a service that talks to the outside.
class ServiceThread {
public:
    virtual ~ServiceThread() = default;

    /// Of that thread. From others only `post`, `now` and `elapsed`.
    virtual Scheduler &scheduler() = 0;
    /// Runs a short body there and returns when it has ended. What was posted before runs before.
    virtual void runAndWait(const std::function<void()> &body) = 0;
};

} // namespace velmo
