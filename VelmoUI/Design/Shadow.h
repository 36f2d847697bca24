#pragma once

#include <QImage>
#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The soft shadow of a rounded body that hangs from the item's top edge. It is blurred once into a
/// small picture, whose corners and edges are then laid around the body as it grows.
class Shadow : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT
    /// The body, in points of the item.
    Q_PROPERTY(QRectF body MEMBER m_body NOTIFY bodyChanged)
    Q_PROPERTY(qreal cornerRadius MEMBER m_cornerRadius NOTIFY looksChanged)
    /// As CSS counts it: twice the Gaussian's standard deviation.
    Q_PROPERTY(qreal blur MEMBER m_blur NOTIFY looksChanged)
    /// How far down the shadow falls.
    Q_PROPERTY(qreal drop MEMBER m_drop NOTIFY bodyChanged)

public:
    explicit Shadow(QQuickItem *parent = nullptr);

Q_SIGNALS:
    void bodyChanged();
    void looksChanged();

protected:
    QSGNode *updatePaintNode(QSGNode *previous, UpdatePaintNodeData *data) override;
    void itemChange(ItemChange change, const ItemChangeData &value) override;

private:
    struct Node;

    /// How far the blur reaches out of the body, and how much of the body's corner it changes.
    qreal reach() const { return 1.5 * m_blur; }
    qreal corner() const { return reach() + m_cornerRadius; }
    /// The shadow of the smallest body whose corners don't touch.
    QImage render(qreal scale) const;

    QRectF m_body;
    qreal m_cornerRadius = 0;
    qreal m_blur = 0;
    qreal m_drop = 0;
};

} // namespace velmo
