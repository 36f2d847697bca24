#pragma once

#include "VelmoSystem/Linux/Desktop/ThumbnailCache.h"
#include "VelmoSystem/Ports/Thumbnailer.h"

namespace velmo {

/// Takes pictures from the desktop's cache; else reads images itself and asks `pdftoppm` for the
/// first page of a PDF and `ffmpegthumbnailer` for a frame of a video, which it keeps in the cache.
class DesktopThumbnailer : public Thumbnailer {
public:
    /// `cacheFolder` is "thumbnails" in the user's cache.
    explicit DesktopThumbnailer(const QString &cacheFolder) : m_cache(cacheFolder) {}

    static QString standardCacheFolder();

    QImage picture(const QString &path, int side, std::stop_token stop) override;

private:
    const ThumbnailCache m_cache;
};

} // namespace velmo
