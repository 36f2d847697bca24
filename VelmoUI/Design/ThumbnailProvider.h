#pragma once

#include "VelmoCore/Foundation/Scheduler.h"

#include <QQuickAsyncImageProvider>
#include <QThreadPool>

#include <stop_token>

namespace velmo {

class Thumbnailer;

/// `image://thumbnail/PATH`, percent-encoded: a picture of what is in a file, else the theme's icon
/// of its type. Pictures fit `sourceSize`, or 128 pixels, and are made two at a time.
class ThumbnailProvider : public QQuickAsyncImageProvider {
public:
    /// Both outlive the provider.
    ThumbnailProvider(Thumbnailer &thumbnailer, Scheduler &scheduler);
    /// Waits for the pictures that are being made.
    ~ThumbnailProvider() override;

    static QString urlFor(const QString &path);

    QQuickImageResponse *requestImageResponse(const QString &id,
                                              const QSize &requestedSize) override;

private:
    Thumbnailer &m_thumbnailer;
    Scheduler &m_scheduler;
    std::stop_source m_end;
    QThreadPool m_pool;
};

} // namespace velmo
