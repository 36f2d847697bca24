#include "VelmoUI/Design/ProgressRing.h"

#include <QPainter>

#include <algorithm>

namespace velmo {

ProgressRing::ProgressRing(QQuickItem *parent) : QQuickPaintedItem(parent)
{
    setAntialiasing(true);
    connect(this, &ProgressRing::changed, this, [this] { update(); });
}

void ProgressRing::paint(QPainter *painter)
{
    // Qt counts arcs in sixteenths of a degree, against the clock.
    constexpr int circle = 360 * 16;
    const qreal margin = m_lineWidth / 2;
    const QRectF ring = boundingRect().adjusted(margin, margin, -margin, -margin);
    painter->setPen(QPen(m_trackColor, m_lineWidth));
    painter->drawEllipse(ring);
    const int span = qRound(circle * std::clamp(m_progress, 0.0, 1.0));
    if (span == 0)
        return;
    painter->setPen(QPen(m_color, m_lineWidth, Qt::SolidLine, Qt::RoundCap));
    painter->drawArc(ring, circle / 4, -span);
}

} // namespace velmo
