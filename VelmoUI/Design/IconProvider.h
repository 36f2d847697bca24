#pragma once

#include <QQuickImageProvider>

namespace velmo {

/// `image://icon/NAME`: a picture of the desktop's icon theme, or of a file by its path. An icon
/// that isn't there gives the theme's icon of an executable. Pictures are square, `sourceSize` wide
/// or 48 pixels.
class IconProvider : public QQuickImageProvider {
public:
    /// Where the desktop names no theme of its own, the application gets one.
    IconProvider();

    QPixmap requestPixmap(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace velmo
