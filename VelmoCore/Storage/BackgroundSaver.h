#pragma once

#include "VelmoCore/Foundation/Scheduler.h"

#include <exception>
#include <functional>
#include <memory>

namespace velmo {

/// Writes one store's file away from the main thread, one save at a time. Of the saves that wait
/// only the latest is done. Main thread only.
class BackgroundSaver {
public:
    /// Encodes and writes what it holds; throws where that fails. Runs on another thread.
    using Save = std::function<void()>;
    /// Gets what a save threw, or nothing. Runs on the main thread.
    using Finished = std::function<void(const std::exception_ptr &failure)>;

    BackgroundSaver(Scheduler &scheduler, Finished finished);
    /// Waits for what is still to be saved, without telling.
    ~BackgroundSaver();

    void save(Save save);
    /// Waits until all is saved, and reports the result.
    void flush();

private:
    class State;
    std::shared_ptr<State> m_state;
};

} // namespace velmo
