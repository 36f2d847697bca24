#include "VelmoUI/Design/Shadow.h"

#include <QPainter>
#include <QPainterPath>

#include <vector>

namespace velmo {

namespace {

/// Three box blurs in a row come close to a Gaussian.
constexpr int passes = 3;
/// The shadow is soft enough to be made small and drawn large.
constexpr int reduction = 4;

/// Blurs `count` values that lie `stride` apart, with a box of 2 × `radius` + 1.
void boxBlur(uchar *values, int count, int stride, int radius, std::vector<uchar> &scratch)
{
    scratch.resize(std::size_t(count));
    const int width = 2 * radius + 1;
    const auto at = [&](int i) { return i < 0 || i >= count ? 0 : int(values[i * stride]); };
    int sum = 0;
    for (int i = -radius; i <= radius; ++i)
        sum += at(i);
    for (int i = 0; i < count; ++i) {
        scratch[std::size_t(i)] = uchar(sum / width);
        sum += at(i + radius + 1) - at(i - radius);
    }
    for (int i = 0; i < count; ++i)
        values[i * stride] = scratch[std::size_t(i)];
}

} // namespace

Shadow::Shadow(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    connect(this, &Shadow::bodyChanged, this, [this] { update(); });
}

void Shadow::paint(QPainter *painter)
{
    const QSize small = (size() / reduction).toSize();
    if (small.isEmpty())
        return;
    painter->setRenderHint(QPainter::SmoothPixmapTransform);
    painter->drawImage(QRectF({}, size()), render(small));
}

QImage Shadow::render(const QSize &size) const
{
    QImage mask(size, QImage::Format_Alpha8);
    mask.fill(0);
    {
        QPainter painter(&mask);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(1.0 / reduction, 1.0 / reduction);
        // Rounded corners at the top would show beside the ears; they lie above the edge.
        const QRectF body((width() - m_bodySize.width()) / 2, m_drop - m_cornerRadius,
                          m_bodySize.width(), m_bodySize.height() + m_cornerRadius);
        QPainterPath path;
        path.addRoundedRect(body, m_cornerRadius, m_cornerRadius);
        painter.fillPath(path, Qt::black);
    }
    const int radius = qMax(1, qRound(m_blur / reduction / passes));
    std::vector<uchar> scratch;
    for (int pass = 0; pass < passes; ++pass) {
        for (int y = 0; y < mask.height(); ++y)
            boxBlur(mask.scanLine(y), mask.width(), 1, radius, scratch);
        for (int x = 0; x < mask.width(); ++x)
            boxBlur(mask.bits() + x, mask.height(), int(mask.bytesPerLine()), radius, scratch);
    }
    QImage shadow(size, QImage::Format_ARGB32_Premultiplied);
    shadow.fill(Qt::transparent);
    QPainter painter(&shadow);
    painter.fillRect(shadow.rect(), Qt::black);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    return shadow;
}

} // namespace velmo
