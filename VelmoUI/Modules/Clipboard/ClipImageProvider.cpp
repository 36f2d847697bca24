#include "VelmoUI/Modules/Clipboard/ClipImageProvider.h"

#include "VelmoUI/Design/ImageRequest.h"

#include <QBuffer>
#include <QImageReader>
#include <QUrl>

namespace velmo {

namespace {

constexpr int mostThreads = 2;

QImage unpacked(QByteArray png, const QSize &wanted)
{
    QBuffer buffer(&png);
    QImageReader reader(&buffer);
    const QSize size = reader.size();
    if (!wanted.isEmpty() && (size.width() > wanted.width() || size.height() > wanted.height()))
        reader.setScaledSize(size.scaled(wanted, Qt::KeepAspectRatio).expandedTo({1, 1}));
    return reader.read();
}

} // namespace

ClipImageProvider::ClipImageProvider(ClipImageWriter images) : m_images(std::move(images))
{
    m_pool.setMaxThreadCount(mostThreads);
}

ClipImageProvider::~ClipImageProvider()
{
    m_pool.clear();
    m_pool.waitForDone();
}

QString ClipImageProvider::urlFor(const QString &name)
{
    return QStringLiteral("image://clip/") + QString::fromLatin1(QUrl::toPercentEncoding(name));
}

QQuickImageResponse *ClipImageProvider::requestImageResponse(const QString &id,
                                                             const QSize &requestedSize)
{
    const auto request = std::make_shared<ImageRequest>();
    auto *const response = ImageRequest::respond(request);
    m_pool.start([this, request, name = QUrl::fromPercentEncoding(id.toUtf8()), requestedSize] {
        const auto png = request->isStopped() ? std::nullopt : m_images.read(name);
        request->answer(png ? unpacked(*png, requestedSize) : QImage());
    });
    return response;
}

} // namespace velmo
