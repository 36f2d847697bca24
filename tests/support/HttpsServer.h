#pragma once

#include "tests/support/MailServer.h"

#include <QSslSocket>
#include <QTcpServer>
#include <QUrl>

#include <map>

namespace velmo {

/// An HTTPS server on loopback which says what it is told, byte for byte.
class HttpsServer : public QTcpServer {
public:
    struct Answer {
        QByteArray bytes;
        QByteArray rest; ///< follows again and again
        bool closes = true;
    };

    explicit HttpsServer(const OwnTrust::Certificate &certificate) : m_certificate(certificate)
    {
        listen(QHostAddress::LocalHost);
    }

    QUrl url(const QString &path, const QString &scheme = u"https"_qs) const
    {
        return QUrl(u"%1://localhost:%2%3"_qs.arg(scheme).arg(serverPort()).arg(path));
    }

    std::map<QByteArray, Answer> answers; ///< by path; there is silence without one
    QByteArrayList requests;              ///< their heads
    std::vector<QSslSocket *> clients;    ///< that are connected

protected:
    void incomingConnection(qintptr descriptor) override
    {
        auto *client = clients.emplace_back(new QSslSocket(this));
        client->setLocalCertificate(m_certificate.certificate);
        client->setPrivateKey(m_certificate.key, QSsl::Ec);
        connect(client, &QSslSocket::readyRead, this, [=, this] { hear(*client); });
        connect(client, &QSslSocket::disconnected, this, [=, this] {
            std::erase(clients, client);
            client->deleteLater();
        });
        client->setSocketDescriptor(descriptor);
        client->startServerEncryption();
    }

private:
    void hear(QSslSocket &client)
    {
        if (!client.peek(1 << 16).contains("\r\n\r\n"))
            return;
        requests << client.readAll();
        const auto found = answers.find(requests.back().split(' ').at(1));
        if (found == answers.end())
            return;
        const Answer &answer = found->second;
        client.write(answer.bytes);
        if (!answer.rest.isEmpty()) {
            connect(&client, &QSslSocket::encryptedBytesWritten, this,
                    [&client, rest = answer.rest] {
                        if (client.encryptedBytesToWrite() < rest.size())
                            client.write(rest);
                    });
        } else if (answer.closes) {
            client.disconnectFromHost();
        }
    }

    const OwnTrust::Certificate m_certificate;
};

} // namespace velmo
