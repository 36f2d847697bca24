#pragma once

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Ports/Downloader.h"

#include <QNetworkReply>

#include <memory>

class QNetworkAccessManager;

namespace velmo {

/// One request of a `Downloader`, with the redirects that it meets. Lives on the thread of the
/// manager and the scheduler.
class HttpsExchange {
public:
    HttpsExchange(const Downloader::Request &request, QNetworkAccessManager &manager,
                  Scheduler &scheduler, Downloader::Finished finished);
    /// Ends it; nothing is called.
    ~HttpsExchange();
    Q_DISABLE_COPY_MOVE(HttpsExchange)

    /// Calls `finished` once, which may destroy this; at once where the address is no good.
    void start();

private:
    void ask(const QUrl &url);
    void drop();
    int status() const;
    void judgeHead();
    void redirect();
    void read();
    void end();

    void finish(Downloader::Result result);
    void fail(const QString &problem);

    const Downloader::Request m_request;
    QNetworkAccessManager &m_manager;
    Scheduler &m_scheduler;
    Downloader::Finished m_finished;
    std::unique_ptr<QNetworkReply, QScopedPointerDeleteLater> m_reply; ///< may be calling us
    QObject m_ear; ///< hears the reply, which itself needs its signals to end the connection
    ScheduledTask m_limit;
    int m_redirectCount = 0;
    bool m_isUntrusted = false;
    QByteArray m_body;
};

} // namespace velmo
