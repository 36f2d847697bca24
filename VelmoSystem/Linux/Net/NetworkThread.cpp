#include "VelmoSystem/Linux/Net/NetworkThread.h"

#include "VelmoCore/Foundation/SystemScheduler.h"

#include <QThread>

#include <latch>

namespace velmo {

/// Its timers belong to the thread that makes them.
class NetworkThread::Loop : public QThread {
public:
    Loop()
    {
        setObjectName(QStringLiteral("network"));
        start();
        m_isReady.wait();
    }
    ~Loop() override
    {
        quit();
        wait();
    }

    Scheduler &scheduler() { return *m_scheduler; }

private:
    void run() override
    {
        SystemScheduler scheduler;
        m_scheduler = &scheduler;
        m_isReady.count_down();
        exec();
    }

    std::latch m_isReady{1};
    SystemScheduler *m_scheduler = nullptr;
};

NetworkThread::NetworkThread() = default;
NetworkThread::~NetworkThread() = default;

Scheduler &NetworkThread::scheduler()
{
    if (!m_loop)
        m_loop = std::make_unique<Loop>();
    return m_loop->scheduler();
}

void NetworkThread::runAndWait(const std::function<void()> &body)
{
    std::latch done(1);
    scheduler().post([&] {
        body();
        done.count_down();
    });
    done.wait();
}

} // namespace velmo
