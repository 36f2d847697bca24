#pragma once

#include <QColor>
#include <QQuickPaintedItem>
#include <QtQml/qqmlregistration.h>

namespace velmo {

/// How far something is, as a ring.
class ProgressRing : public QQuickPaintedItem {
    Q_OBJECT
    QML_ELEMENT
    Q_PROPERTY(qreal progress MEMBER m_progress NOTIFY changed) ///< 0 to 1
    Q_PROPERTY(QColor color MEMBER m_color NOTIFY changed)
    Q_PROPERTY(QColor trackColor MEMBER m_trackColor NOTIFY changed)
    Q_PROPERTY(qreal lineWidth MEMBER m_lineWidth NOTIFY changed)

public:
    explicit ProgressRing(QQuickItem *parent = nullptr);

    void paint(QPainter *painter) override;

Q_SIGNALS:
    void changed();

private:
    qreal m_progress = 0;
    QColor m_color = Qt::white;
    QColor m_trackColor = Qt::transparent;
    qreal m_lineWidth = 2.5;
};

} // namespace velmo
