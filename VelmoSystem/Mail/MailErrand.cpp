#include "VelmoSystem/Mail/MailErrand.h"

namespace velmo {

namespace {

constexpr Seconds logoutTimeout = 5s;

} // namespace

MailErrand::MailErrand(std::unique_ptr<ByteStream> stream, Task task, const QString &password,
                       Listener listener, Scheduler &scheduler)
    : m_task(std::move(task)), m_listener(std::move(listener)),
      m_connection(std::move(stream), scheduler), m_run(run(password))
{
}

MailErrand::~MailErrand()
{
    m_isEnding = true;
    m_connection.cancel();
    Q_ASSERT(m_run.isReady());
}

QCoro::Task<> MailErrand::run(QString password)
{
    std::optional<IMAPError> failure;
    try {
        co_await m_connection.open();
        co_await m_connection.login(m_task.account.username, password);
        const auto inbox = co_await m_connection.select(QStringLiteral("INBOX"));
        if (m_task.uidValidity && *m_task.uidValidity != inbox.uidValidity)
            throw IMAPError::unsupported(QStringLiteral(
                "O servidor renumerou a caixa de entrada, e nada foi feito. Tente de novo."));
        co_await m_task.work(m_connection);
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
