#pragma once

#include "VelmoSystem/Linux/Net/NetworkThread.h"
#include "VelmoSystem/Ports/ServerAccess.h"

namespace velmo {

/// `ServerAccess` with the system's trust and key store.
class LinuxServerAccess : public ServerAccess {
public:
    ServiceThread &thread() override { return m_thread; }
    std::unique_ptr<ByteStream> connect(const QString &host, int port) override;
    std::unique_ptr<KeyItemStore> openKeyItems(const std::stop_token &stop) override;

private:
    NetworkThread m_thread;
};

} // namespace velmo
