#pragma once

#include <QImage>
#include <QString>

namespace velmo {

/// The pictures of files that the user's applications share, by the freedesktop Thumbnail Managing
/// Standard 0.9. May be used from any thread.
class ThumbnailCache {
public:
    /// `folder` is "thumbnails" in the user's cache.
    explicit ThumbnailCache(const QString &folder) : m_folder(folder) {}

    /// The smallest picture of those made for at least `side` pixels; null without one that is as
    /// new as the file.
    QImage find(const QString &path, int side) const;
    /// Keeps a picture of the size that `sizeFor` gives. What can't be kept is made again later.
    void keep(const QString &path, const QImage &picture, int size) const;

    /// The pixels that a kept picture has at most, for a request of `side`.
    static int sizeFor(int side);

private:
    QString fileFor(const QString &path, const QString &size) const;

    const QString m_folder;
};

} // namespace velmo
