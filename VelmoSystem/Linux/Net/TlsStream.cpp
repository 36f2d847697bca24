#include "VelmoSystem/Linux/Net/TlsStream.h"

#include "VelmoSystem/Linux/Net/TlsConfiguration.h"

#include <QNetworkProxy>
#include <QSslError>

#include <netinet/in.h>
#include <netinet/tcp.h>
#include <sys/socket.h>

namespace velmo {

namespace {

constexpr Seconds connectTimeout = 15s;
/// Seconds without a sign of life before the first probe, between two, and how many may fail.
constexpr int keepAliveIdle = 45;
constexpr int keepAliveInterval = 10;
constexpr int keepAliveCount = 3;
constexpr qint64 bufferSize = 1024 * 1024; ///< bytes that wait for us; more waits at the server

} // namespace

TlsStream::TlsStream(QString host, int port, Scheduler &scheduler)
    : m_host(std::move(host)), m_port(port), m_scheduler(scheduler), m_socket(new QSslSocket)
{
    m_socket->setSslConfiguration(tlsConfiguration());
    m_socket->setProxy(QNetworkProxy::NoProxy);
    m_socket->setReadBufferSize(bufferSize);
    QObject::connect(m_socket.get(), &QSslSocket::encrypted, [this] {
        keepAlive();
        m_wakeup.wake();
    });
    QObject::connect(m_socket.get(), &QSslSocket::readyRead, [this] { m_wakeup.wake(); });
    QObject::connect(m_socket.get(), &QSslSocket::errorOccurred,
                     [this](QAbstractSocket::SocketError error) { socketFailed(error); });
}

TlsStream::~TlsStream()
{
    m_socket->disconnect();
    m_socket->abort();
}

QCoro::Task<> TlsStream::open()
{
    const ScheduledTask limit = m_scheduler.after(connectTimeout, [this] {
        cancel(IMAPError::connection(QStringLiteral("o servidor não respondeu a tempo")));
    });
    if (!m_error)
        m_socket->connectToHostEncrypted(m_host, std::uint16_t(m_port));
    while (!m_error && !m_socket->isEncrypted())
        co_await m_wakeup.wait();
    if (m_error)
        throw IMAPError(*m_error);
}

QCoro::Task<QByteArray> TlsStream::receive(qsizetype most)
{
    while (!m_isCancelled) {
        if (m_socket->bytesAvailable() > 0)
            co_return m_socket->read(most);
        if (m_error)
            break;
        co_await m_wakeup.wait();
    }
    throw IMAPError(*m_error);
}

void TlsStream::send(const QByteArray &bytes)
{
    if (!m_error)
        m_socket->write(bytes);
}

void TlsStream::cancel(const IMAPError &error)
{
    m_isCancelled = true;
    m_socket->disconnect();
    m_socket->abort();
    fail(error);
}

void TlsStream::fail(const IMAPError &error)
{
    if (!m_error)
        m_error = error;
    m_wakeup.wake();
}

void TlsStream::socketFailed(QAbstractSocket::SocketError error)
{
    const auto connection = [&](IMAPError::Reason reason) {
        return IMAPError::connection(m_socket->errorString(), reason);
    };
    switch (error) {
    case QAbstractSocket::RemoteHostClosedError:
        fail(m_socket->isEncrypted() ? IMAPError::closed()
                                     : connection(IMAPError::Reason::notIMAP));
        break;
    case QAbstractSocket::HostNotFoundError:
        fail(connection(IMAPError::Reason::hostNotFound));
        break;
    case QAbstractSocket::SslHandshakeFailedError:
        fail(connection(m_socket->sslHandshakeErrors().isEmpty() ? IMAPError::Reason::notIMAP
                                                                 : IMAPError::Reason::untrusted));
        break;
    default:
        fail(connection(IMAPError::Reason::connection));
    }
}

/// Notices a connection that died in silence, as when the network was left.
void TlsStream::keepAlive()
{
    const int socket = int(m_socket->socketDescriptor());
    const auto set = [&](int level, int option, int value) {
        setsockopt(socket, level, option, &value, sizeof value);
    };
    set(SOL_SOCKET, SO_KEEPALIVE, 1);
    set(IPPROTO_TCP, TCP_KEEPIDLE, keepAliveIdle);
    set(IPPROTO_TCP, TCP_KEEPINTVL, keepAliveInterval);
    set(IPPROTO_TCP, TCP_KEEPCNT, keepAliveCount);
}

} // namespace velmo
