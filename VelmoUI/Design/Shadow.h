#pragma once

#include <QImage>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// The soft shadow of a rounded body that hangs from the item's top edge. Blurred once for each
/// size, not for each frame.
class Shadow : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    /// The body, in points, centred in the item's width.
    Q_PROPERTY(QSizeF bodySize MEMBER m_bodySize NOTIFY bodyChanged)
    Q_PROPERTY(qreal cornerRadius MEMBER m_cornerRadius NOTIFY bodyChanged)
    /// How far the blur reaches, and how far down the shadow is shifted.
    Q_PROPERTY(qreal blur MEMBER m_blur NOTIFY bodyChanged)
    Q_PROPERTY(qreal drop MEMBER m_drop NOTIFY bodyChanged)

public:
    explicit Shadow(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void bodyChanged();

private:
    QImage render(const QSize &size) const;

    QSizeF m_bodySize;
    qreal m_cornerRadius = 0;
    qreal m_blur = 0;
    qreal m_drop = 0;
};

} // namespace velmo
