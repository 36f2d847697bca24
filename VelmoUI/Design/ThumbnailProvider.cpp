#include "VelmoUI/Design/ThumbnailProvider.h"

#include "VelmoSystem/Ports/Thumbnailer.h"
#include "VelmoUI/Design/ImageRequest.h"

#include <QFileInfo>
#include <QIcon>
#include <QMimeDatabase>
#include <QUrl>

#include <algorithm>
#include <memory>

namespace velmo {

namespace {

constexpr int defaultSide = 128;
constexpr int mostThreads = 2;

/// Of the file's type; the first that the theme has counts.
QStringList iconNames(const QString &path)
{
    const QMimeType type =
        QMimeDatabase().mimeTypeForFile(QFileInfo(path), QMimeDatabase::MatchExtension);
    return {type.iconName(), type.genericIconName(), QStringLiteral("text-x-generic")};
}

/// On the main thread, where icons live.
QImage iconOf(const QStringList &names, int side)
{
    for (const QString &name : names) {
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
    const auto request = std::make_shared<ImageRequest>();
    auto *const response = ImageRequest::respond(request);
    m_pool.start([this, request, path, side] {
        const std::stop_callback atEnd(m_end.get_token(), [&] { request->stop(); });
        const QImage picture = m_thumbnailer.picture(path, side, request->token());
        if (!picture.isNull() || request->isStopped()) {
            request->answer(picture);
            return;
        }
        m_scheduler.post(
            [request, names = iconNames(path), side] { request->answer(iconOf(names, side)); });
    });
    return response;
}

} // namespace velmo
