#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace velmo {

/// The signals that ask a process to end (SIGTERM, SIGINT, SIGHUP), reported on the main thread.
/// One that was ignored at the start (`nohup`) stays so. At most one object at a time.
class ProcessSignals {
public:
    /// Throws `LocalizedError` where the system has no file descriptor left.
    explicit ProcessSignals(std::function<void()> onTerminate);
    ~ProcessSignals();

private:
    std::function<void()> m_onTerminate;
    std::unique_ptr<QSocketNotifier> m_notifier;
};

} // namespace velmo
