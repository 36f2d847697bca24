#include "VelmoSystem/Mail/MailErrand.h"

namespace velmo {

namespace {

constexpr Seconds logoutTimeout = 5s;

} // namespace

MailErrand::MailErrand(std::unique_ptr<ByteStream> stream, const MailAccount &account,
                       const QString &password, Work work, Listener listener, Scheduler &scheduler)
    : m_work(std::move(work)), m_listener(std::move(listener)),
      m_connection(std::move(stream), scheduler), m_run(run(account.username, password))
{
}

MailErrand::~MailErrand()
{
    m_isEnding = true;
    m_connection.cancel();
    Q_ASSERT(m_run.isReady());
}

QCoro::Task<> MailErrand::run(QString username, QString password)
{
    std::optional<IMAPError> failure;
    try {
        co_await m_connection.open();
        co_await m_connection.login(username, password);
        co_await m_connection.select(QStringLiteral("INBOX"));
        co_await m_work(m_connection);
    } catch (const IMAPError &error) {
        failure = error;
    }
    if (m_isEnding)
        co_return;
    m_listener.finished(failure);
    if (!failure) {
        try {
            co_await m_connection.command(QStringLiteral("LOGOUT"), logoutTimeout);
        } catch (const IMAPError &) {
            // All is done already.
        }
    }
    if (!m_isEnding)
        m_listener.ended();
}

} // namespace velmo
