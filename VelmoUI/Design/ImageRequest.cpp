#include "VelmoUI/Design/ImageRequest.h"

namespace velmo {

class ImageRequest::Response : public QQuickImageResponse {
public:
    explicit Response(std::shared_ptr<ImageRequest> request) : m_request(std::move(request))
    {
        m_request->m_response = this;
    }
    ~Response() override
    {
        m_request->stop();
        const std::scoped_lock lock(m_request->m_lock);
        m_request->m_response = nullptr;
    }

    QQuickTextureFactory *textureFactory() const override
    {
        return QQuickTextureFactory::textureFactoryForImage(m_image);
    }
    void cancel() override { m_request->stop(); }

    void finish(const QImage &image)
    {
        m_image = image;
        Q_EMIT finished();
    }

private:
    const std::shared_ptr<ImageRequest> m_request;
    QImage m_image;
};

QQuickImageResponse *ImageRequest::respond(const std::shared_ptr<ImageRequest> &request)
{
    return new Response(request);
}

void ImageRequest::answer(const QImage &image)
{
    const std::scoped_lock lock(m_lock);
    if (m_response)
        m_response->finish(image);
}

} // namespace velmo
