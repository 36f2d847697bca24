#pragma once

#include "VelmoSystem/Ports/Downloader.h"
#include "VelmoSystem/Ports/ServiceThread.h"

#include <memory>

namespace velmo {

/// `Downloader` on the thread for connections, with the system's trust. Nothing is made before the
/// first request.
class HttpsDownloader : public Downloader {
public:
    /// Answers by `scheduler`, which is the main thread's.
    HttpsDownloader(ServiceThread &thread, Scheduler &scheduler);
    ~HttpsDownloader() override;
    Q_DISABLE_COPY_MOVE(HttpsDownloader)

    [[nodiscard]] std::shared_ptr<void> get(const Request &request, Finished finished) override;

private:
    class Exchanges;
    class Call;

    ServiceThread &m_thread;
    Scheduler &m_scheduler;
    std::unique_ptr<Exchanges> m_exchanges; ///< work and end on that thread
    int m_callCount = 0;
    std::shared_ptr<int> m_alive = std::make_shared<int>();
};

} // namespace velmo
