#include "VelmoSystem/Linux/Net/HttpsDownloader.h"

#include "VelmoSystem/Linux/Net/HttpsExchange.h"

#include <QNetworkAccessManager>
#include <QNetworkProxy>

#include <map>

namespace velmo {

namespace {

/// How long connections are kept for the next request. A nap of the machine ends them, too: they
/// may lead nowhere after it.
constexpr Seconds connectionsKept = 5s;

} // namespace

/// What is under way, on the thread for connections.
class HttpsDownloader::Exchanges {
public:
    explicit Exchanges(Scheduler &scheduler) : m_scheduler(scheduler) {}

    void start(int number, const Request &request, Finished finished)
    {
        m_rest.cancel();
        if (!m_manager) {
            m_manager = std::make_unique<QNetworkAccessManager>();
            // The system's proxies would be asked for on this thread, and may take their time.
            m_manager->setProxy(QNetworkProxy::NoProxy);
        }
        const auto ended = [this, number, finished = std::move(finished)](const Result &result) {
            finished(result);
            end(number);
        };
        auto &exchange = m_exchanges[number];
        exchange = std::make_unique<HttpsExchange>(request, *m_manager, m_scheduler, ended);
        exchange->start();
    }

    void end(int number)
    {
        if (m_exchanges.erase(number) > 0 && m_exchanges.empty())
            m_rest = m_scheduler.after(connectionsKept, [this] { m_manager.reset(); });
    }

private:
    Scheduler &m_scheduler;
    std::unique_ptr<QNetworkAccessManager> m_manager;
    std::map<int, std::unique_ptr<HttpsExchange>> m_exchanges;
    ScheduledTask m_rest;
};

/// What holds a request, on the main thread.
class HttpsDownloader::Call {
public:
    Call(HttpsDownloader &downloader, int number, Finished finished)
        : m_downloader(downloader), m_alive(downloader.m_alive), m_number(number),
          m_finished(std::move(finished))
    {
    }
    ~Call()
    {
        if (!m_finished || m_alive.expired())
            return;
        m_downloader.m_thread.scheduler().post(
            [&exchanges = *m_downloader.m_exchanges, number = m_number] { exchanges.end(number); });
    }
    Q_DISABLE_COPY_MOVE(Call)

    void finish(const Result &result)
    {
        if (m_alive.expired())
            return;
        const auto finished = std::exchange(m_finished, nullptr);
        finished(result);
    }

private:
    HttpsDownloader &m_downloader;
    const std::weak_ptr<int> m_alive; ///< the downloader is there
    const int m_number;
    Finished m_finished;
};

HttpsDownloader::HttpsDownloader(ServiceThread &thread, Scheduler &scheduler)
    : m_thread(thread), m_scheduler(scheduler)
{
}

HttpsDownloader::~HttpsDownloader()
{
    if (m_exchanges)
        m_thread.runAndWait([this] { m_exchanges.reset(); });
}

std::shared_ptr<void> HttpsDownloader::get(const Request &request, Finished finished)
{
    Scheduler &scheduler = m_thread.scheduler();
    if (!m_exchanges)
        m_exchanges = std::make_unique<Exchanges>(scheduler);
    const int number = ++m_callCount;
    const auto call = std::make_shared<Call>(*this, number, std::move(finished));
    const auto answer = [&main = m_scheduler, call = std::weak_ptr(call)](const Result &result) {
        main.post([call, result] {
            if (const auto waiting = call.lock())
                waiting->finish(result);
        });
    };
    scheduler.post([&exchanges = *m_exchanges, number, request, answer] {
        exchanges.start(number, request, answer);
    });
    return call;
}

} // namespace velmo
