#include "VelmoUI/Design/IconProvider.h"

namespace velmo {

IconProvider::IconProvider() : QQuickImageProvider(QQuickImageProvider::Pixmap)
{
}

QPixmap IconProvider::requestPixmap(const QString &, QSize *, const QSize &)
{
    return {};
}

} // namespace velmo
