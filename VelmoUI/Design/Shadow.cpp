#include "VelmoUI/Design/Shadow.h"

#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGTexture>

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <vector>

namespace velmo {

namespace {

/// Three box blurs in a row come close to a Gaussian.
constexpr int passes = 3;

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

/// From `start` to `end` with the two cuts between: three spans.
using Cuts = std::array<qreal, 4>;

} // namespace

/// Seven pictures around the body; what lies under it isn't drawn.
struct Shadow::Node : QSGNode {
    struct Place {
        std::size_t column;
        std::size_t row;
    };
    static constexpr std::array<Place, 7> around{
        {{0, 0}, {2, 0}, {0, 1}, {2, 1}, {0, 2}, {1, 2}, {2, 2}}};

    Node(QQuickWindow &window, const QImage &image, qreal pixelRatio)
        : texture(window.createTextureFromImage(image)), scale(pixelRatio), size(image.width())
    {
        for (QSGImageNode *&piece : pieces) {
            piece = window.createImageNode();
            piece->setTexture(texture.get());
            // Edges are stretched along themselves only, where all pixels are alike.
            piece->setFiltering(QSGTexture::Nearest);
            appendChildNode(piece);
        }
    }

    void place(const Cuts &source, const Cuts &x, const Cuts &y)
    {
        for (std::size_t i = 0; i < around.size(); ++i) {
            const auto [column, row] = around[i];
            const auto cut = [=](const Cuts &across, const Cuts &down) {
                return QRectF(QPointF(across[column], down[row]),
                              QPointF(across[column + 1], down[row + 1]));
            };
            if (pieces[i]->rect() == cut(x, y))
                continue;
            pieces[i]->setSourceRect(cut(source, source));
            pieces[i]->setRect(cut(x, y));
        }
    }

    std::unique_ptr<QSGTexture> texture;
    qreal scale;
    int size;
    std::array<QSGImageNode *, around.size()> pieces;
};

Shadow::Shadow(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(this, &Shadow::bodyChanged, this, [this] { update(); });
    connect(this, &Shadow::looksChanged, this, [this] { update(); });
}

QSGNode *Shadow::updatePaintNode(QSGNode *previous, UpdatePaintNodeData *)
{
    const qreal scale = window()->effectiveDevicePixelRatio();
    const int size = int(std::ceil((2 * (reach() + corner()) + 1) * scale));
    auto *node = static_cast<Node *>(previous);
    if (node && (node->scale != scale || node->size != size || m_body.isEmpty())) {
        delete node;
        node = nullptr;
    }
    if (m_body.isEmpty() || (!node && !isVisible())) // rendering it takes a part of the first frame
        return nullptr;
    if (!node)
        node = new Node(*window(), render(scale), scale);

    // Whole pixels, so that the pieces meet. None is ever empty: Qt's software renderer doesn't
    // clear what a picture leaves that shrinks to nothing.
    const auto snapped = [scale](qreal length) { return std::round(length * scale) / scale; };
    const auto cuts = [&](qreal from, qreal to) {
        const qreal inner = std::min(corner(), (to - from) / 2 - 1);
        return Cuts{snapped(from - reach()), snapped(from + inner), snapped(to - inner),
                    snapped(to + reach())};
    };
    const qreal piece = std::round((reach() + corner()) * scale);
    node->place({0, piece, size - piece, qreal(size)}, cuts(m_body.left(), m_body.right()),
                cuts(m_body.top() + m_drop, m_body.bottom() + m_drop));
    return node;
}

void Shadow::itemChange(ItemChange change, const ItemChangeData &value)
{
    if (change == ItemDevicePixelRatioHasChanged || change == ItemVisibleHasChanged)
        update();
    QQuickItem::itemChange(change, value);
}

QImage Shadow::render(qreal scale) const
{
    const int size = int(std::ceil((2 * (reach() + corner()) + 1) * scale));
    QImage mask(size, size, QImage::Format_Alpha8);
    mask.fill(0);
    {
        QPainter painter(&mask);
        painter.setRenderHint(QPainter::Antialiasing);
        const qreal margin = reach() * scale;
        QPainterPath path;
        path.addRoundedRect(QRectF(mask.rect()).adjusted(margin, margin, -margin, -margin),
                            m_cornerRadius * scale, m_cornerRadius * scale);
        painter.fillPath(path, Qt::black);
    }
    const int radius = qMax(1, qRound(m_blur / 2 * scale));
    std::vector<uchar> scratch;
    for (int pass = 0; pass < passes; ++pass) {
        for (int y = 0; y < size; ++y)
            boxBlur(mask.scanLine(y), size, 1, radius, scratch);
        for (int x = 0; x < size; ++x)
            boxBlur(mask.bits() + x, size, int(mask.bytesPerLine()), radius, scratch);
    }
    QImage shadow(size, size, QImage::Format_ARGB32_Premultiplied);
    shadow.fill(Qt::black);
    QPainter painter(&shadow);
    painter.setCompositionMode(QPainter::CompositionMode_DestinationIn);
    painter.drawImage(0, 0, mask);
    return shadow;
}

} // namespace velmo
