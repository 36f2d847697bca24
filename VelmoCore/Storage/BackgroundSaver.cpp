#include "VelmoCore/Storage/BackgroundSaver.h"

#include <QThreadPool>

#include <condition_variable>
#include <mutex>
#include <optional>

namespace velmo {

class BackgroundSaver::State : public std::enable_shared_from_this<State> {
public:
    State(Scheduler &scheduler, Finished finished)
        : m_scheduler(scheduler), m_finished(std::move(finished))
    {
    }

    void save(Save save)
    {
        const std::lock_guard lock(m_mutex);
        m_next = std::move(save);
        if (std::exchange(m_isSaving, true))
            return;
        QThreadPool::globalInstance()->start([self = shared_from_this()] { self->work(); });
    }

    void wait()
    {
        std::unique_lock lock(m_mutex);
        m_saved.wait(lock, [this] { return !m_isSaving; });
    }

    /// For the thread may hold the state a little longer than its owner.
    void forget()
    {
        const std::lock_guard lock(m_mutex);
        m_result.reset();
    }

    /// Reports the result of the last save, once.
    void notify()
    {
        std::unique_lock lock(m_mutex);
        const auto result = std::exchange(m_result, std::nullopt);
        lock.unlock();
        if (result)
            m_finished(*result);
    }

private:
    void work()
    {
        std::unique_lock lock(m_mutex);
        while (const Save save = std::exchange(m_next, nullptr)) {
            lock.unlock();
            std::exception_ptr failure;
            try {
                save();
            } catch (...) {
                failure = std::current_exception();
            }
            lock.lock();
            m_result = failure;
            m_scheduler.post([state = weak_from_this()] {
                if (const auto self = state.lock())
                    self->notify();
            });
        }
        m_isSaving = false;
        m_saved.notify_all();
    }

    Scheduler &m_scheduler;
    const Finished m_finished;
    std::mutex m_mutex; ///< guards all below
    std::condition_variable m_saved;
    Save m_next;
    bool m_isSaving = false;
    std::optional<std::exception_ptr> m_result; ///< not reported yet
};

BackgroundSaver::BackgroundSaver(Scheduler &scheduler, Finished finished)
    : m_state(std::make_shared<State>(scheduler, std::move(finished)))
{
}

BackgroundSaver::~BackgroundSaver()
{
    m_state->wait();
    m_state->forget();
}

void BackgroundSaver::save(Save save)
{
    m_state->save(std::move(save));
}

void BackgroundSaver::flush()
{
    m_state->wait();
    m_state->notify();
}

} // namespace velmo
