#include "VelmoUI/Design/ThumbnailProvider.h"

#include "VelmoSystem/Ports/Thumbnailer.h"

#include <QFileInfo>
#include <QIcon>
#include <QMimeDatabase>
#include <QUrl>

#include <algorithm>
#include <memory>
#include <mutex>

namespace velmo {

namespace {

constexpr int defaultSide = 128;
constexpr int mostThreads = 2;

class Response;

/// What a response shares with the thread that works for it, for either may end first.
struct Wish {
    std::mutex lock;
    Response *response = nullptr; ///< null once nobody waits
    std::stop_source stop;
};

class Response : public QQuickImageResponse {
public:
    explicit Response(std::shared_ptr<Wish> wish) : m_wish(std::move(wish))
    {
        m_wish->response = this;
    }
    ~Response() override
    {
        m_wish->stop.request_stop();
        const std::scoped_lock lock(m_wish->lock);
        m_wish->response = nullptr;
    }

    QQuickTextureFactory *textureFactory() const override
    {
        return QQuickTextureFactory::textureFactoryForImage(m_image);
    }
    void cancel() override { m_wish->stop.request_stop(); }

    void finish(const QImage &image)
    {
        m_image = image;
        Q_EMIT finished();
    }

private:
    const std::shared_ptr<Wish> m_wish;
    QImage m_image;
};

void answer(Wish &wish, const QImage &image)
{
    const std::scoped_lock lock(wish.lock);
    if (wish.response)
        wish.response->finish(image);
}

/// On the main thread, where icons live.
QImage iconOf(const QString &path, int side)
{
    static const QMimeDatabase types;
    const QMimeType type = types.mimeTypeForFile(QFileInfo(path), QMimeDatabase::MatchExtension);
    for (const QString &name :
         {type.iconName(), type.genericIconName(), QStringLiteral("text-x-generic")}) {
        const QImage icon = QIcon::fromTheme(name).pixmap(QSize(side, side), 1.0).toImage();
        if (!icon.isNull())
            return icon;
    }
    return {};
}

} // namespace

ThumbnailProvider::ThumbnailProvider(Thumbnailer &thumbnailer, Scheduler &scheduler)
    : m_thumbnailer(thumbnailer), m_scheduler(scheduler)
{
    m_pool.setMaxThreadCount(mostThreads);
}

ThumbnailProvider::~ThumbnailProvider()
{
    m_end.request_stop();
    m_pool.clear();
    m_pool.waitForDone();
}

QString ThumbnailProvider::urlFor(const QString &path)
{
    return QStringLiteral("image://thumbnail/") +
           QString::fromLatin1(QUrl::toPercentEncoding(path));
}

QQuickImageResponse *ThumbnailProvider::requestImageResponse(const QString &id,
                                                             const QSize &requestedSize)
{
    const int requested = std::max(requestedSize.width(), requestedSize.height());
    const int side = requested > 0 ? requested : defaultSide;
    const QString path = QUrl::fromPercentEncoding(id.toUtf8());
    const auto wish = std::make_shared<Wish>();
    auto *const response = new Response(wish);
    m_pool.start([this, wish, path, side] {
        const std::stop_callback atEnd(m_end.get_token(), [&] { wish->stop.request_stop(); });
        const QImage picture = m_thumbnailer.picture(path, side, wish->stop.get_token());
        if (!picture.isNull() || wish->stop.stop_requested())
            answer(*wish, picture);
        else
            m_scheduler.post([wish, path, side] { answer(*wish, iconOf(path, side)); });
    });
    return response;
}

} // namespace velmo
