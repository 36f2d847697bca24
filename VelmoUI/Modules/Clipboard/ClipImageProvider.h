#pragma once

#include "VelmoCore/Clipboard/ClipImageWriter.h"

#include <QQuickAsyncImageProvider>
#include <QThreadPool>

namespace velmo {

/// `image://clip/NAME`: an image of the clipboard's history, opened and unpacked on another thread.
/// It fits `sourceSize` and isn't enlarged.
class ClipImageProvider : public QQuickAsyncImageProvider {
public:
    explicit ClipImageProvider(ClipImageWriter images);
    /// Waits for the images that are being unpacked.
    ~ClipImageProvider() override;

    static QString urlFor(const QString &name);

    QQuickImageResponse *requestImageResponse(const QString &id,
                                              const QSize &requestedSize) override;

private:
    const ClipImageWriter m_images;
    QThreadPool m_pool;
};

} // namespace velmo
