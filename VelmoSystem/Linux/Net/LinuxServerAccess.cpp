#include "VelmoSystem/Linux/Net/LinuxServerAccess.h"

#include "VelmoSystem/Linux/Keys/KeyItemStores.h"
#include "VelmoSystem/Linux/Net/TlsStream.h"

namespace velmo {

std::unique_ptr<ByteStream> LinuxServerAccess::connect(const QString &host, int port)
{
    return std::make_unique<TlsStream>(host, port, m_thread.scheduler());
}

std::unique_ptr<KeyItemStore> LinuxServerAccess::openKeyItems(const std::stop_token &stop)
{
    return std::make_unique<KeyItemStores>(KeyItemStores::standardFolder(), stop);
}

} // namespace velmo
