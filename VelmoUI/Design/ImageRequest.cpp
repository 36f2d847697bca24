#include "VelmoUI/Design/ImageRequest.h"

namespace velmo {

class ImageRequest::Response : public QQuickImageResponse {
public:
    explicit Response(std::shared_ptr<ImageRequest> wish) : m_wish(std::move(wish))
    {
        m_wish->m_response = this;
    }
    ~Response() override
    {
        m_wish->stop();
        const std::scoped_lock lock(m_wish->m_lock);
        m_wish->m_response = nullptr;
    }

    QQuickTextureFactory *textureFactory() const override
    {
        return QQuickTextureFactory::textureFactoryForImage(m_image);
    }
    void cancel() override { m_wish->stop(); }

    void finish(const QImage &image)
    {
        m_image = image;
        Q_EMIT finished();
    }

private:
    const std::shared_ptr<ImageRequest> m_wish;
    QImage m_image;
};

QQuickImageResponse *ImageRequest::respond(const std::shared_ptr<ImageRequest> &wish)
{
    return new Response(wish);
}

void ImageRequest::answer(const QImage &image)
{
    const std::scoped_lock lock(m_lock);
    if (m_response)
        m_response->finish(image);
}

} // namespace velmo
