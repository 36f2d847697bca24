#include "VelmoSystem/Linux/Net/NetworkThread.h"

#include "VelmoCore/Foundation/SystemScheduler.h"

#include <latch>

namespace velmo {

NetworkThread::NetworkThread()
{
    m_thread.setObjectName(QStringLiteral("network"));
}

NetworkThread::~NetworkThread()
{
    if (!m_scheduler)
        return;
    runAndWait([this] { m_scheduler.reset(); });
    m_thread.quit();
    m_thread.wait();
}

Scheduler &NetworkThread::scheduler()
{
    start();
    return *m_scheduler;
}

void NetworkThread::runAndWait(const std::function<void()> &body)
{
    start();
    std::latch done(1);
    m_scheduler->post([&] {
        body();
        done.count_down();
    });
    done.wait();
}

void NetworkThread::start()
{
    if (m_scheduler)
        return;
    m_thread.start();
    // Its timers belong to the thread that makes them.
    std::latch done(1);
    QObject maker;
    maker.moveToThread(&m_thread);
    QMetaObject::invokeMethod(
        &maker,
        [&] {
            m_scheduler = std::make_unique<SystemScheduler>();
            maker.moveToThread(nullptr);
            done.count_down();
        },
        Qt::QueuedConnection);
    done.wait();
}

} // namespace velmo
