#include "VelmoUI/Design/IconProvider.h"

#include <QDir>
#include <QGuiApplication>
#include <QIcon>
#include <QPainter>
#include <QUrl>

#include <algorithm>

namespace velmo {

namespace {

constexpr int defaultSide = 48;

/// Some entries name the file of an icon where its name belongs.
QString withoutSuffix(const QString &name)
{
    for (const char *suffix : {".png", ".svg", ".xpm"}) {
        if (name.endsWith(QLatin1String(suffix)))
            return name.chopped(4);
    }
    return name;
}

/// A null picture if there is no such icon.
QPixmap picture(const QString &icon, int side)
{
    const QSize size(side, side);
    if (QDir::isAbsolutePath(icon))
        return QIcon(icon).pixmap(size, 1.0);
    for (const QString &name : {icon, withoutSuffix(icon)}) {
        const QPixmap named = QIcon::fromTheme(name).pixmap(size, 1.0);
        if (!named.isNull())
            return named;
    }
    // Orvane that isn't installed has no icon in the theme.
    return icon == QLatin1String("app.orvane.Orvane")
               ? QGuiApplication::windowIcon().pixmap(size, 1.0)
               : QPixmap();
}

QPixmap squared(const QPixmap &picture, int side)
{
    QPixmap square(side, side);
    square.fill(Qt::transparent);
    const QSize fitted = picture.size().scaled(square.size(), Qt::KeepAspectRatio);
    QPainter painter(&square);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawPixmap(QRect({(side - fitted.width()) / 2, (side - fitted.height()) / 2}, fitted),
                       picture);
    return square;
}

} // namespace

IconProvider::IconProvider() : QQuickImageProvider(QQuickImageProvider::Pixmap)
{
    const QString replacement = QStringLiteral("Adwaita");
    const QString theme = QIcon::themeName();
    if (theme.isEmpty() || theme == QLatin1String("hicolor"))
        QIcon::setThemeName(replacement);
    if (QIcon::fallbackThemeName().isEmpty())
        QIcon::setFallbackThemeName(replacement);
}

QPixmap IconProvider::requestPixmap(const QString &id, QSize *size, const QSize &requestedSize)
{
    const int requested = std::max(requestedSize.width(), requestedSize.height());
    const int side = requested > 0 ? requested : defaultSide;
    QPixmap icon = picture(QUrl::fromPercentEncoding(id.toUtf8()), side);
    if (icon.isNull())
        icon = picture(QStringLiteral("application-x-executable"), side);
    if (!icon.isNull() && icon.size() != QSize(side, side))
        icon = squared(icon, side);
    if (size)
        *size = icon.size();
    return icon;
}

} // namespace velmo
