#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Mail/Wakeup.h"
#include "VelmoSystem/Ports/ByteStream.h"

#include <QSslSocket>

#include <memory>
#include <optional>

namespace velmo {

/// A TLS connection (1.2 or newer) to a server whose certificate the system trusts for its name.
/// Lives on the thread that makes it.
class TlsStream : public ByteStream {
public:
    TlsStream(QString host, int port, Scheduler &scheduler);
    ~TlsStream() override;
    Q_DISABLE_COPY_MOVE(TlsStream)

    QCoro::Task<> open() override;
    QCoro::Task<QByteArray> receive(qsizetype most) override;
    void send(const QByteArray &bytes) override;
    void cancel(const IMAPError &error) override;

private:
    void fail(const IMAPError &error);
    void socketFailed(QAbstractSocket::SocketError error);
    void keepAlive();

    const QString m_host;
    const int m_port;
    Scheduler &m_scheduler;
    std::unique_ptr<QSslSocket, QScopedPointerDeleteLater> m_socket; ///< may be calling us
    Wakeup m_wakeup;
    std::optional<IMAPError> m_error; ///< why it has ended
    bool m_isCancelled = false;       ///< what has come doesn't count any more
};

} // namespace velmo
