#pragma once

#include <QMimeData>
#include <QPixmap>

#include <functional>
#include <memory>

class QQuickItem;

namespace velmo::TileDrag {

/// What shows of the tile within its `radius`; the rest is transparent. The tile is in a window.
QPixmap picture(const QQuickItem &tile);

/// Drags `data`, seen as `tile` with its `radius`, until it is dropped; then `done`, unless
/// `context` has gone. Returns at once: events go on meanwhile, and the tile, even its page, may
/// go.
void start(QQuickItem &tile, std::unique_ptr<QMimeData> data, Qt::DropActions actions,
           QObject *context, std::function<void()> done);

} // namespace velmo::TileDrag
