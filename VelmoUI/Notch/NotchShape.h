#pragma once

#include "VelmoUI/Notch/ShapeAnimator.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

class QPainterPath;

namespace velmo {

/// The black body that hangs from the item's top edge between its two ears. Its edges are smooth at
/// every fraction of a pixel; between them it is two plain rectangles, so a frame of its movement
/// costs next to nothing, with and without a GPU.
class NotchShape : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// Both are required. `centerX` is the notch's middle, in points of the item.
    Q_PROPERTY(velmo::ShapeAnimator *spec READ spec WRITE setSpec NOTIFY specChanged)
    Q_PROPERTY(qreal centerX READ centerX WRITE setCenterX NOTIFY frameChanged)
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY specChanged)
    /// The body between the ears, as it is in this frame.
    Q_PROPERTY(QRectF body READ body NOTIFY frameChanged)

public:
    explicit NotchShape(QQuickItem *parent = nullptr);

    ShapeAnimator *spec() const { return m_spec; }
    void setSpec(ShapeAnimator *spec);
    qreal centerX() const { return m_centerX; }
    void setCenterX(qreal centerX);
    QRectF body() const;

Q_SIGNALS:
    void specChanged();
    void frameChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *previous, UpdatePaintNodeData *data) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    struct Node;

    /// The outline in device pixels.
    QPainterPath outline(qreal scale) const;

    ShapeAnimator *m_spec = nullptr;
    qreal m_centerX = 0;
    QColor m_color = Qt::black;
};

} // namespace velmo
