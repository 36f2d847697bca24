#pragma once

#include <QtGlobal>

#include <coroutine>
#include <utility>

namespace velmo {

/// Lets one coroutine wait for something to happen on its thread: `co_await wakeup.wait()`.
class Wakeup {
public:
    Wakeup() = default;
    Q_DISABLE_COPY_MOVE(Wakeup)

    struct Awaiter {
        Wakeup &wakeup;

        bool await_ready() const noexcept { return false; }
        void await_suspend(std::coroutine_handle<> waiting) const noexcept
        {
            wakeup.m_waiting = waiting;
        }
        void await_resume() const noexcept {}
    };
    Awaiter wait() { return {*this}; }

    /// The coroutine runs on within this call, and may destroy this. Nothing where none waits.
    void wake()
    {
        if (const auto waiting = std::exchange(m_waiting, nullptr))
            waiting.resume();
    }

private:
    std::coroutine_handle<> m_waiting;
};

} // namespace velmo
