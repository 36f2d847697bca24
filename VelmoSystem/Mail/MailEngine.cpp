#include "VelmoSystem/Mail/MailEngine.h"

namespace velmo {

MailEngine::MailEngine(ServerAccess &servers, Scheduler &scheduler)
    : m_servers(servers), m_scheduler(scheduler)
{
}

void MailEngine::start(const MailAccount &account, MailWorker::Surroundings surroundings)
{
    auto &worker = m_workers[account.id];
    worker.reset(); // before the next one connects
    worker = std::make_unique<MailWorker>(account, std::move(surroundings), m_scheduler);
}

void MailEngine::stop(const Uuid &account)
{
    m_workers.erase(account);
}

void MailEngine::refresh()
{
    for (const auto &[id, worker] : m_workers)
        worker->refresh();
}

void MailEngine::run(const MailErrand::Task &task, const QString &password,
                     std::function<void(const std::optional<IMAPError> &)> finished)
{
    const int number = ++m_errandCount;
    const auto ended = [this, number, alive = std::weak_ptr(m_alive)] {
        m_scheduler.post([this, number, alive] {
            if (!alive.expired())
                m_errands.erase(number);
        });
    };
    m_errands[number] = std::make_unique<MailErrand>(
        m_servers.connect(task.account.host, task.account.port), task, password,
        MailErrand::Listener{std::move(finished), ended}, m_scheduler);
}

} // namespace velmo
