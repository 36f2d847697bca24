#pragma once

#include "tests/support/TemporaryFolder.h"

#include <QProcess>

#include <map>
#include <memory>

namespace velmo {

/// The system's trust, of this process and its children only: one authority, which vouches for the
/// certificates made here. To be made before any thread.
class OwnTrust {
public:
    OwnTrust();

    struct Certificate {
        QString certificate; ///< paths
        QString key;
    };
    enum class Fault { none, selfSigned, expired, sha1 };
    Certificate issue(const QString &host, Fault fault = Fault::none) const;

private:
    void run(const QStringList &arguments) const;

    TemporaryFolder m_folder;
    mutable int m_count = 0;
};

/// Dovecot on loopback with users of its own.
class MailServer {
public:
    MailServer(const OwnTrust::Certificate &certificate, const QStringList &users);
    ~MailServer();

    int port() const { return m_port; }
    void start();
    /// At once, with all its connections.
    void kill();
    /// While it doesn't run.
    void setPassword(const QString &user, const QString &password);
    /// Through the folder, as a local delivery agent does.
    void deliver(const QString &user, const QByteArray &message);
    /// The files of a mailbox, with their flags behind ":2,".
    QStringList files(const QString &user, const QString &mailbox = {}) const;

private:
    QString folder(const QString &user, const QString &mailbox) const;

    TemporaryFolder m_folder;
    int m_port;
    std::map<QString, QString> m_passwords;
    std::unique_ptr<QProcess> m_process;
    int m_delivered = 0;
};

} // namespace velmo
