#pragma once

#include <QQuickAsyncImageProvider>

#include <memory>
#include <mutex>
#include <stop_token>

namespace velmo {

/// What Qt's request for an image shares with the thread that works for it: either may end first.
class ImageRequest {
public:
    /// What Qt gets, and owns, as long as it waits for the image.
    static QQuickImageResponse *respond(const std::shared_ptr<ImageRequest> &request);

    /// Nobody waits any more. Any thread.
    bool isStopped() const { return m_stop.stop_requested(); }
    void stop() { m_stop.request_stop(); }
    std::stop_token token() const { return m_stop.get_token(); }
    /// Answers the request; once, on any thread. A null image stands for none.
    void answer(const QImage &image);

private:
    class Response;

    std::mutex m_lock;
    Response *m_response = nullptr; ///< null once nobody waits
    std::stop_source m_stop;
};

} // namespace velmo
