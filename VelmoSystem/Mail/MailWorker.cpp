#include "VelmoSystem/Mail/MailWorker.h"

#include <algorithm>
#include <cmath>

namespace velmo {

namespace {

constexpr Seconds firstDelay = 3s;
constexpr double delayGrowth = 2.5;
constexpr Seconds longestDelay = 120s;
/// A password that was refused isn't hammered.
constexpr Seconds refusedDelay = 300s;
constexpr Seconds roundTime = 60s;
constexpr Seconds noopTimeout = 60s;

const QString inbox = QStringLiteral("INBOX");

} // namespace

MailWorker::MailWorker(const MailAccount &account, Surroundings surroundings, Scheduler &scheduler)
    : m_account(account), m_surroundings(std::move(surroundings)), m_scheduler(scheduler),
      m_run(run())
{
}

MailWorker::~MailWorker()
{
    m_isEnding = true;
    if (m_connection)
        m_connection->cancel();
    m_wakeup.wake();
    Q_ASSERT(m_run.isReady());
}

void MailWorker::refresh()
{
    if (!m_isOnline)
        return;
    m_connection->finishIdle();
    m_wakeup.wake(); // of a server without IDLE
}

QCoro::Task<> MailWorker::run()
{
    Seconds delay = firstDelay;
    while (true) {
        const auto [password, refusal] = co_await readPassword();
        if (m_isEnding)
            co_return;
        if (!password && refusal.isEmpty()) {
            m_surroundings.statusChanged({MailStatus::Offline{
                QStringLiteral("A senha não está no %1. Conecte a conta de novo.")
                    .arg(KeyItemStore::name(KeyItemStore::Place::keyring))}});
            co_return;
        }
        QString problem = refusal;
        bool isRejected = false;
        if (password) {
            m_surroundings.statusChanged({MailStatus::Connecting{}});
            try {
                co_await connect(*password);
                co_await follow();
            } catch (const IMAPError &error) {
                problem = error.description();
                isRejected = error.isRejected();
            }
            m_connection.reset();
        }
        const bool wasOnline = std::exchange(m_isOnline, false);
        if (m_isEnding)
            co_return;
        m_surroundings.statusChanged({MailStatus::Offline{problem}});
        co_await pause(isRejected ? refusedDelay : delay);
        if (m_isEnding)
            co_return;
        delay = wasOnline ? firstDelay : std::min(delay * delayGrowth, longestDelay);
    }
}

QCoro::Task<MailPassword> MailWorker::readPassword()
{
    std::optional<MailPassword> answer;
    m_surroundings.readPassword(
        [this, &answer, alive = std::weak_ptr(m_alive)](const MailPassword &password) {
            if (alive.expired() || m_isEnding)
                return;
            answer = password;
            m_wakeup.wake();
        });
    while (!answer && !m_isEnding)
        co_await m_wakeup.wait();
    co_return answer.value_or(MailPassword());
}

QCoro::Task<> MailWorker::connect(QString password)
{
    m_connection = std::make_unique<IMAPConnection>(
        m_surroundings.connect(m_account.host, m_account.port), m_scheduler);
    IMAPConnection &connection = *m_connection;
    co_await connection.open();
    co_await connection.login(m_account.username, password);
    Loaded loaded;
    loaded.mailboxes = co_await connection.mailboxes();
    const auto selected = co_await connection.select(inbox);
    loaded.uidValidity = selected.uidValidity;
    if (selected.exists >= 1) {
        const auto first =
            std::max<std::int64_t>(1, selected.exists - std::int64_t(MailInbox::mostMessages) + 1);
        loaded.messages = co_await connection.fetchMessages(QStringLiteral("%1:*").arg(first),
                                                            false, m_account.id);
    }
    m_known.load(m_account.id, loaded.messages, loaded.uidValidity);
    m_isOnline = true;
    m_surroundings.loaded(loaded);
    m_surroundings.statusChanged({MailStatus::Online{}});
}

QCoro::Task<> MailWorker::follow()
{
    while (!m_isEnding) {
        co_await waitForNews();
        if (!m_isEnding)
            co_await sync();
    }
}

/// Rounds end at the same moments for all accounts, so that the machine wakes once for all of them.
Seconds MailWorker::untilNextRound() const
{
    return roundTime - Seconds(std::fmod(m_scheduler.elapsed().count(), roundTime.count()));
}

QCoro::Task<> MailWorker::waitForNews()
{
    if (m_connection->takeNews())
        co_return;
    if (m_connection->canIdle()) {
        co_await m_connection->idle(untilNextRound());
        co_return;
    }
    co_await pause(untilNextRound());
    if (!m_isEnding)
        co_await m_connection->command(QStringLiteral("NOOP"), noopTimeout);
}

QCoro::Task<> MailWorker::sync()
{
    const auto [low, high] = m_known.uidRange(m_account.id);
    Synced synced;
    synced.from = low;
    if (low != 0)
        synced.flags = co_await m_connection->flags(low);
    // For what lies beyond its last message a server gives that one, whole. So it is asked only
    // where the flags show more.
    if (synced.flags.empty() || synced.flags.rbegin()->first > high) {
        synced.messages = co_await m_connection->fetchMessages(
            QStringLiteral("%1:*").arg(std::uint64_t{high} + 1), true, m_account.id);
        std::erase_if(synced.messages,
                      [high = high](const MailMessage &message) { return message.uid <= high; });
    }
    m_known.sync(m_account.id, synced.messages, synced.flags, low);
    m_surroundings.synced(synced);
}

QCoro::Task<> MailWorker::pause(Seconds duration)
{
    const ScheduledTask end = m_scheduler.after(duration, [this] { m_wakeup.wake(); });
    co_await m_wakeup.wait();
}

} // namespace velmo
