#include "VelmoUI/Design/TileDrag.h"

#include <QCoreApplication>
#include <QDrag>
#include <QPainter>
#include <QPixmap>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>

namespace velmo {

namespace {

/// The picture hangs below the pointer, so that what it is dropped on can be seen.
constexpr QPoint beside(-12, -12);

} // namespace

QPixmap TileDrag::picture(const QQuickItem &tile)
{
    QQuickWindow &window = *tile.window();
    const qreal ratio = window.effectiveDevicePixelRatio();
    const qreal radius = tile.property("radius").toReal() * ratio;
    const QRectF frame = tile.mapRectToScene(tile.boundingRect());
    const QImage shot = window.grabWindow().copy(
        QRectF(frame.topLeft() * ratio, frame.size() * ratio).toAlignedRect());
    QPixmap picture(shot.size());
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(shot);
    painter.drawRoundedRect(picture.rect(), radius, radius);
    painter.end();
    picture.setDevicePixelRatio(ratio);
    return picture;
}

void TileDrag::start(QQuickItem &tile, std::unique_ptr<QMimeData> data, Qt::DropActions actions,
                     QObject *context, std::function<void()> done)
{
    if (!tile.window())
        return;
    auto *const drag = new QDrag(qApp); // Qt's, from `exec` on
    drag->setMimeData(data.release());
    drag->setPixmap(picture(tile));
    drag->setHotSpot(beside);
    QMetaObject::invokeMethod(
        drag,
        [drag, actions, context = QPointer(context), done = std::move(done)] {
            drag->exec(actions, actions.testFlag(Qt::MoveAction) ? Qt::MoveAction : Qt::CopyAction);
            if (context)
                done();
        },
        Qt::QueuedConnection);
}

} // namespace velmo
