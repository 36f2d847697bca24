#pragma once

#include <QQuickImageProvider>

namespace velmo {

/// `image://icon/NAME`: a picture of the desktop's icon theme, or of a file by its path. An icon
/// that isn't there gives the theme's icon of an executable.
class IconProvider : public QQuickImageProvider {
public:
    IconProvider();

    QPixmap requestPixmap(const QString &id, QSize *size, const QSize &requestedSize) override;
};

} // namespace velmo
