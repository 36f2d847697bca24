#pragma once

#include "VelmoSystem/Ports/ServerAccess.h"
#include "VelmoSystem/Ports/ServiceThread.h"

#include "tests/support/FakeKeyItems.h"
#include "tests/support/ScriptedStream.h"

#include <deque>
#include <mutex>

namespace velmo {

/// A key store that several threads may open at the same time.
class SharedKeyItems : public KeyItemStore {
public:
    SharedKeyItems(FakeKeyItems &items, std::mutex &mutex) : m_items(items), m_mutex(mutex) {}

    Place place() const override { return Place::keyring; }
    std::optional<QByteArray> find(const Item &item) const override
    {
        const std::lock_guard lock(m_mutex);
        return m_items.find(item);
    }
    bool add(const Item &item, const QByteArray &secret) override
    {
        const std::lock_guard lock(m_mutex);
        return m_items.add(item, secret);
    }
    void rename(const Item &item) override
    {
        const std::lock_guard lock(m_mutex);
        m_items.rename(item);
    }
    void remove(const Item &item) override
    {
        const std::lock_guard lock(m_mutex);
        m_items.remove(item);
    }

private:
    FakeKeyItems &m_items;
    std::mutex &m_mutex;
};

/// Servers that follow scripts, one a connection, on the test's own thread.
class FakeServers : public ServerAccess, public ServiceThread {
public:
    explicit FakeServers(Scheduler &scheduler) : m_scheduler(scheduler) {}

    ServiceThread &thread() override { return *this; }
    Scheduler &scheduler() override { return m_scheduler; }
    void runAndWait(const std::function<void()> &body) override { body(); }
    std::unique_ptr<ByteStream> connect(const QString &, int) override
    {
        ServerScript script = ServerScript().closes();
        if (!scripts.empty()) {
            script = scripts.front();
            scripts.pop_front();
        }
        return std::make_unique<ScriptedStream>(script);
    }
    std::unique_ptr<KeyItemStore> openKeyItems(const std::stop_token &) override
    {
        return std::make_unique<SharedKeyItems>(keys, mutex);
    }

    std::deque<ServerScript> scripts; ///< a connection without one is closed at once
    FakeKeyItems keys;
    std::mutex mutex; ///< of the keys

private:
    Scheduler &m_scheduler;
};

} // namespace velmo
