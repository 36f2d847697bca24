#include "VelmoSystem/Linux/Net/TlsConfiguration.h"

#include <QSslSocket>

namespace velmo {

QSslConfiguration tlsConfiguration()
{
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setProtocol(QSsl::TlsV1_2OrLater);
    configuration.setPeerVerifyMode(QSslSocket::VerifyPeer);
    return configuration;
}

} // namespace velmo
