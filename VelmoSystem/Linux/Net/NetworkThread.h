#pragma once

#include "VelmoSystem/Ports/ServiceThread.h"

#include <QtGlobal>

#include <memory>

namespace velmo {

/// Starts when it is first used.
class NetworkThread : public ServiceThread {
public:
    NetworkThread();
    /// Whatever lives there has gone.
    ~NetworkThread() override;
    Q_DISABLE_COPY_MOVE(NetworkThread)

    Scheduler &scheduler() override;
    void runAndWait(const std::function<void()> &body) override;

private:
    class Loop;

    std::unique_ptr<Loop> m_loop; ///< null before the start
};

} // namespace velmo
