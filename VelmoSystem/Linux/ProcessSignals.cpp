#include "VelmoSystem/Linux/ProcessSignals.h"

#include "VelmoCore/Foundation/LocalizedError.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <sys/eventfd.h>
#include <unistd.h>

namespace velmo {

namespace {

constexpr std::array terminations{SIGTERM, SIGINT, SIGHUP};

std::atomic<int> wakeDescriptor = -1;
static_assert(std::atomic<int>::is_always_lock_free, "read by a signal handler");

extern "C" void noteTermination(int)
{
    const int error = errno;
    const std::uint64_t one = 1;
    // A full counter is as good: the main thread has been woken already.
    [[maybe_unused]] const auto written = ::write(wakeDescriptor, &one, sizeof one);
    errno = error;
}

void setHandler(int number, void (*handler)(int))
{
    struct sigaction action = {};
    ::sigaction(number, nullptr, &action);
    if (action.sa_handler == SIG_IGN)
        return;
    action = {};
    action.sa_handler = handler;
    action.sa_flags = SA_RESTART;
    ::sigaction(number, &action, nullptr);
}

} // namespace

ProcessSignals::ProcessSignals(std::function<void()> onTerminate)
    : m_onTerminate(std::move(onTerminate))
{
    wakeDescriptor = ::eventfd(0, EFD_CLOEXEC | EFD_NONBLOCK);
    if (wakeDescriptor < 0)
        throw LocalizedError(QStringLiteral("Não foi possível acompanhar os sinais do sistema: %1")
                                 .arg(qt_error_string()));
    m_notifier = std::make_unique<QSocketNotifier>(wakeDescriptor, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, m_notifier.get(),
                     [this](QSocketDescriptor descriptor) {
                         std::uint64_t count = 0;
                         if (::read(descriptor, &count, sizeof count) > 0)
                             m_onTerminate();
                     });
    for (const int number : terminations)
        setHandler(number, noteTermination);
}

ProcessSignals::~ProcessSignals()
{
    for (const int number : terminations)
        setHandler(number, SIG_DFL);
    m_notifier.reset();
    ::close(wakeDescriptor.exchange(-1));
}

} // namespace velmo
