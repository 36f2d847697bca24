#pragma once

#include <QString>

#include <memory>
#include <stop_token>

namespace velmo {

class ByteStream;
class KeyItemStore;
class ServiceThread;

/// How servers are reached, and the passwords for them.
class ServerAccess {
public:
    virtual ~ServerAccess() = default;

    /// Where connections live.
    virtual ServiceThread &thread() = 0;
    /// A connection over TLS, to be opened. On that thread.
    virtual std::unique_ptr<ByteStream> connect(const QString &host, int port) = 0;
    /// The system's key store, on any thread where it may take its time.
    virtual std::unique_ptr<KeyItemStore> openKeyItems(const std::stop_token &stop) = 0;
};

} // namespace velmo
