#include "VelmoUI/Design/TileDrag.h"

#include <QCoreApplication>
#include <QDrag>
#include <QPixmap>
#include <QPointer>
#include <QQuickItem>
#include <QQuickWindow>

namespace velmo {

namespace {

/// The picture hangs below the pointer, so that what it is dropped on can be seen.
constexpr QPoint beside(-12, -12);

QPixmap pictureOf(const QQuickItem &tile)
{
    QQuickWindow &window = *tile.window();
    const qreal ratio = window.effectiveDevicePixelRatio();
    const QRectF frame = tile.mapRectToScene(tile.boundingRect());
    QPixmap picture = QPixmap::fromImage(window.grabWindow().copy(
        QRectF(frame.topLeft() * ratio, frame.size() * ratio).toAlignedRect()));
    picture.setDevicePixelRatio(ratio);
    return picture;
}

} // namespace

void TileDrag::start(QQuickItem &tile, std::unique_ptr<QMimeData> data, Qt::DropActions actions,
                     QObject *context, std::function<void()> done)
{
    if (!tile.window())
        return;
    auto *const drag = new QDrag(qApp); // Qt's, from `exec` on
    drag->setMimeData(data.release());
    drag->setPixmap(pictureOf(tile));
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
