#pragma once

#include <QByteArray>
#include <QString>

#include <optional>
#include <vector>

namespace velmo::ImageEncoder {

struct Image {
    QByteArray png;
    int width = 0;  ///< pixels
    int height = 0; ///< pixels
};

/// More pixels are never unpacked.
constexpr qint64 mostPixels = 64'000'000;

/// The image of `data` as PNG, its longer side at most `maxDimension` pixels. Nothing for what is
/// no image or has more than `mostPixels`. Any thread.
std::optional<Image> encodePNG(const QByteArray &data, int maxDimension);

/// The one of `types` to read an image from; nothing where none can be.
std::optional<QString> bestType(const std::vector<QString> &types);

} // namespace velmo::ImageEncoder
