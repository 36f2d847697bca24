#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Storage/DataProtectionStatus.h"

#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>

namespace velmo {

/// Asks the key store for the key on a thread of its own, for a key store may take seconds; one
/// that refuses is asked again later. Main thread only.
class DataProtectionReader {
public:
    /// Runs on the thread. What it gives is asked to give up by the token.
    using OpenItems = std::function<std::unique_ptr<KeyItemStore>(const std::stop_token &)>;

    /// Begins at once.
    DataProtectionReader(Scheduler &scheduler, OpenItems openItems);
    /// Asks the key store to give up, and waits for it.
    ~DataProtectionReader();
    Q_DISABLE_COPY_MOVE(DataProtectionReader)

    /// What is known before `limit` is over, which is time that the caller stands still.
    DataProtectionStatus waitFor(Seconds limit);
    /// Returns when the key store has answered, or has taken as long as it may.
    DataProtectionStatus wait();

    /// Set once: what came of a question, unless a wait gave it or it is one more refusal.
    std::function<void(const DataProtectionStatus &)> onRead = [](const auto &) {};

private:
    void ask();
    void notify();
    /// Nothing if it was taken before.
    std::optional<DataProtectionStatus> take();
    void askAgainAfter(const DataProtectionStatus &status);

    Scheduler &m_scheduler;
    const OpenItems m_openItems;
    Seconds m_pause; ///< until the next question
    bool m_wasRefused = false;
    ScheduledTask m_next;
    std::mutex m_mutex; ///< guards what follows
    std::condition_variable m_answered;
    std::optional<DataProtectionStatus> m_status; ///< until it is taken
    bool m_isAsking = false;
    std::shared_ptr<int> m_alive = std::make_shared<int>();
    std::jthread m_thread; ///< goes first
};

} // namespace velmo
