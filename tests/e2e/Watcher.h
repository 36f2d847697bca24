#pragma once

#include <QString>

#include <chrono>
#include <mutex>
#include <thread>
#include <vector>

namespace velmo {

/// Asks a running Orvane for its status all the time, on a thread of its own: an answer that comes
/// late is a main loop that stood still.
class Watcher {
public:
    using Time = std::chrono::milliseconds;

    static constexpr Time limit{200};
    /// Where the machine itself kept Orvane, the bus or the watcher from a CPU.
    static constexpr Time limitOfBusyMachine{500};

    Watcher(const QString &bus, qint64 process);
    ~Watcher();
    Q_DISABLE_COPY_MOVE(Watcher)

    /// The answers that came too late since the last time, each in words. Waits for the present
    /// one.
    std::vector<QString> takeLate();

private:
    void watch(const std::stop_token &stop, const QString &bus);
    /// How long Orvane's main thread has been ready to run without a CPU.
    Time withoutCpu() const;

    const qint64 m_process;
    std::mutex m_asking; ///< held while an answer is awaited
    std::vector<QString> m_late;
    std::jthread m_thread;
};

} // namespace velmo
