#include "VelmoUI/Notch/NotchShape.h"

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QQuickWindow>
#include <QSGImageNode>
#include <QSGRectangleNode>

#include <algorithm>
#include <cmath>

namespace velmo {

/// The left and the right edge as pictures, the middle as a rectangle, and the middle's last row of
/// pixels, which is covered in part.
struct NotchShape::Node : QSGNode {
    explicit Node(QQuickWindow &window)
        : left(window.createImageNode()), right(window.createImageNode()),
          middle(window.createRectangleNode()), lip(window.createRectangleNode())
    {
        for (QSGImageNode *edge : {left, right}) {
            edge->setOwnsTexture(true);
            edge->setFiltering(QSGTexture::Nearest);
            appendChildNode(edge);
        }
        appendChildNode(middle);
        appendChildNode(lip);
    }

    QSGImageNode *left;
    QSGImageNode *right;
    QSGRectangleNode *middle;
    QSGRectangleNode *lip;
};

namespace {

/// Without a change nothing is drawn again: at the end of a spring only the edges still move.
void fill(QSGRectangleNode &node, const QRectF &rect, const QColor &color)
{
    if (node.rect() != rect)
        node.setRect(rect);
    if (node.color() != color)
        node.setColor(color);
}

} // namespace

NotchShape::NotchShape(QQuickItem *parent) : QQuickItem(parent)
{
    setFlag(ItemHasContents);
    connect(this, &NotchShape::specChanged, this, &NotchShape::frameChanged);
    connect(this, &NotchShape::frameChanged, this, [this] { update(); });
}

void NotchShape::setSpec(ShapeAnimator *spec)
{
    if (spec == m_spec)
        return;
    if (m_spec)
        m_spec->disconnect(this);
    m_spec = spec;
    if (m_spec)
        connect(m_spec, &ShapeAnimator::frameChanged, this, &NotchShape::frameChanged);
    Q_EMIT specChanged();
}

void NotchShape::setCenterX(qreal centerX)
{
    if (centerX == m_centerX)
        return;
    m_centerX = centerX;
    Q_EMIT frameChanged();
}

QRectF NotchShape::body() const
{
    if (!m_spec)
        return {};
    return {m_centerX + m_spec->horizontalOffset() - m_spec->coreWidth() / 2, 0,
            m_spec->coreWidth(), m_spec->height()};
}

QPainterPath NotchShape::outline(qreal scale) const
{
    const QRectF core(body().topLeft() * scale, body().size() * scale);
    const qreal ear = m_spec->topRadius() * scale;
    const qreal corner =
        std::min({m_spec->bottomRadius() * scale, core.width() / 2, core.height()});
    const qreal ball = 2 * corner;
    QPainterPath path({core.left() - ear, 0});
    path.arcTo(QRectF(core.left() - 2 * ear, 0, 2 * ear, 2 * ear), 90, -90);
    path.arcTo(QRectF(core.left(), core.bottom() - ball, ball, ball), 180, 90);
    path.arcTo(QRectF(core.right() - ball, core.bottom() - ball, ball, ball), 270, 90);
    path.arcTo(QRectF(core.right(), 0, 2 * ear, 2 * ear), 180, -90);
    path.closeSubpath();
    return path;
}

QSGNode *NotchShape::updatePaintNode(QSGNode *previous, UpdatePaintNodeData *)
{
    if (!m_spec || !m_spec->isShapeVisible() || body().isEmpty()) {
        delete previous;
        return nullptr;
    }
    auto *node = previous ? static_cast<Node *>(previous) : new Node(*window());
    const qreal scale = window()->effectiveDevicePixelRatio();
    const QPainterPath path = outline(scale);
    const QRectF box = path.boundingRect();
    const int bottom = int(std::ceil(box.bottom()));
    const qreal edge = (m_spec->topRadius() + m_spec->bottomRadius()) * scale;
    const int left = int(std::floor(box.left()));
    const int right = int(std::ceil(box.right()));
    // Where a point isn't a whole number of pixels, the software renderer leaves out the outermost
    // columns of the middle: the pictures go on under it.
    const int overlap = int(std::ceil(2 * scale));
    const int innerLeft = std::min(int(std::ceil(box.left() + edge)), int(box.center().x()));
    const int innerRight = std::max(int(std::floor(box.right() - edge)), innerLeft);

    const auto inPoints = [&](const QRectF &pixels) {
        return QRectF(pixels.topLeft() / scale, pixels.size() / scale);
    };
    const auto draw = [&](QSGImageNode &target, int from, int to) {
        QImage picture(to - from, bottom, QImage::Format_ARGB32_Premultiplied);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.translate(-from, 0);
        painter.fillPath(path, m_color);
        painter.end();
        target.setTexture(window()->createTextureFromImage(picture));
        target.setSourceRect(picture.rect());
        target.setRect(inPoints(QRectF(from, 0, to - from, bottom)));
    };
    draw(*node->left, left, std::min(innerLeft + overlap, right));
    draw(*node->right, std::max(innerRight - overlap, left), right);

    const int whole = int(std::floor(box.bottom()));
    QColor part = m_color;
    part.setAlphaF(float(m_color.alphaF() * (box.bottom() - whole)));
    fill(*node->middle, inPoints(QRectF(innerLeft, 0, innerRight - innerLeft, whole)), m_color);
    fill(*node->lip, inPoints(QRectF(innerLeft, whole, innerRight - innerLeft, 1)), part);
    return node;
}

void NotchShape::itemChange(ItemChange change, const ItemChangeData &value)
{
    if (change == ItemDevicePixelRatioHasChanged)
        update();
    QQuickItem::itemChange(change, value);
}

} // namespace velmo
