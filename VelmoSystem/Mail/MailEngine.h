#pragma once

#include "VelmoSystem/Mail/MailErrand.h"
#include "VelmoSystem/Mail/MailWorker.h"
#include "VelmoSystem/Ports/ServerAccess.h"

#include <map>
#include <memory>

namespace velmo {

/// What of the mail service lives on the network thread: the workers and the errands.
class MailEngine {
public:
    /// Both outlive it.
    MailEngine(ServerAccess &servers, Scheduler &scheduler);

    /// Replaces the worker of the same account.
    void start(const MailAccount &account, MailWorker::Surroundings surroundings);
    void stop(const Uuid &account);
    void stopAll() { m_workers.clear(); }
    void refresh();

    void run(const MailErrand::Task &task, const QString &password,
             std::function<void(const std::optional<IMAPError> &)> finished);

    /// Expires when this goes.
    std::weak_ptr<int> alive() const { return m_alive; }

private:
    ServerAccess &m_servers;
    Scheduler &m_scheduler;
    std::map<Uuid, std::unique_ptr<MailWorker>> m_workers;
    std::map<int, std::unique_ptr<MailErrand>> m_errands;
    int m_errandCount = 0;
    std::shared_ptr<int> m_alive = std::make_shared<int>();
};

} // namespace velmo
