#include "VelmoSystem/Storage/DataProtectionReader.h"

#include <algorithm>

namespace velmo {

namespace {

constexpr Seconds firstPause = 30s;
constexpr Seconds longestPause = 600s;

bool isRefusal(const DataProtectionStatus &status)
{
    return std::holds_alternative<DataProtectionStatus::Unavailable>(status.value);
}

} // namespace

DataProtectionReader::DataProtectionReader(Scheduler &scheduler, OpenItems openItems)
    : m_scheduler(scheduler), m_openItems(std::move(openItems)), m_pause(firstPause)
{
    ask();
}

DataProtectionReader::~DataProtectionReader() = default;

DataProtectionStatus DataProtectionReader::waitFor(Seconds limit)
{
    {
        std::unique_lock lock(m_mutex);
        m_answered.wait_for(lock, limit, [this] { return !m_isAsking; });
    }
    return take().value_or(DataProtectionStatus{DataProtectionStatus::Awaited{}});
}

DataProtectionStatus DataProtectionReader::wait()
{
    {
        std::unique_lock lock(m_mutex);
        m_answered.wait(lock, [this] { return !m_isAsking; });
    }
    return take().value_or(DataProtectionStatus{DataProtectionStatus::Awaited{}});
}

void DataProtectionReader::ask()
{
    m_isAsking = true; // no thread runs now
    m_thread = std::jthread([this, alive = std::weak_ptr(m_alive)](const std::stop_token &stop) {
        const auto items = m_openItems(stop);
        const auto status = DataProtectionStatus::fromKeychain(*items);
        {
            const std::lock_guard lock(m_mutex);
            m_status = status;
            m_isAsking = false;
        }
        m_answered.notify_all();
        m_scheduler.post([this, alive] {
            if (alive.lock())
                notify();
        });
    });
}

void DataProtectionReader::notify()
{
    const bool wasRefused = m_wasRefused;
    const auto status = take();
    if (status && !(wasRefused && isRefusal(*status)))
        onRead(*status);
}

std::optional<DataProtectionStatus> DataProtectionReader::take()
{
    std::unique_lock lock(m_mutex);
    const auto status = std::exchange(m_status, std::nullopt);
    lock.unlock();
    if (status)
        askAgainAfter(*status);
    return status;
}

void DataProtectionReader::askAgainAfter(const DataProtectionStatus &status)
{
    m_wasRefused = isRefusal(status);
    if (!m_wasRefused)
        return;
    m_next = m_scheduler.after(m_pause, [this] { ask(); });
    m_pause = std::min(2 * m_pause, longestPause);
}

} // namespace velmo
