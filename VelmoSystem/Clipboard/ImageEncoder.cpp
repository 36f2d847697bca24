#include "VelmoSystem/Clipboard/ImageEncoder.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>

#include <algorithm>
#include <array>

namespace velmo {

namespace {

/// Without loss first; drawings, which aren't made of pixels, not at all.
constexpr std::array preferred{"image/png",  "image/tiff", "image/bmp",   "image/webp",
                               "image/jpeg", "image/gif",  "image/x-icon"};

QImage scaledDown(const QImage &image, int maxDimension)
{
    if (image.width() <= maxDimension && image.height() <= maxDimension)
        return image;
    const QSize size = image.size().scaled(maxDimension, maxDimension, Qt::KeepAspectRatio);
    return image.scaled(size.expandedTo({1, 1}), Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

} // namespace

std::optional<ImageEncoder::Image> ImageEncoder::encodePNG(const QByteArray &data, int maxDimension)
{
    QBuffer source;
    source.setData(data);
    QImageReader reader(&source);
    reader.setDecideFormatFromContent(true);
    const QSize size = reader.size();
    // A few bytes can claim to be gigabytes of pixels.
    if (!size.isEmpty() && qint64(size.width()) * size.height() > mostPixels)
        return std::nullopt;
    const bool fits =
        !size.isEmpty() && size.width() <= maxDimension && size.height() <= maxDimension;
    reader.setAutoTransform(!fits);
    const QImage image = scaledDown(reader.read(), maxDimension);

    QByteArray png;
    QBuffer target(&png);
    target.open(QIODevice::WriteOnly);
    if (image.isNull() || !image.save(&target, "PNG"))
        return std::nullopt;
    return Image{png, image.width(), image.height()};
}

std::optional<QString> ImageEncoder::bestType(const std::vector<QString> &types)
{
    const QList<QByteArray> readable = QImageReader::supportedMimeTypes();
    for (const char *name : preferred) {
        const auto type = QString::fromLatin1(name);
        if (std::ranges::find(types, type) != types.end() && readable.contains(name))
            return type;
    }
    return std::nullopt;
}

} // namespace velmo
