#pragma once

#include "VelmoSystem/Ports/ServiceThread.h"

#include <QThread>

#include <memory>

namespace velmo {

class SystemScheduler;

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
    void start();

    QThread m_thread;
    std::unique_ptr<SystemScheduler> m_scheduler; ///< lives there
};

} // namespace velmo
