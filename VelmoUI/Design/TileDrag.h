#pragma once

#include <QMimeData>

#include <functional>
#include <memory>

class QQuickItem;

namespace velmo::TileDrag {

/// Drags `data`, seen as `tile` with its `radius`, until it is dropped; then `done`, unless
/// `context` has gone. Returns at once: events go on meanwhile, and the tile, even its page, may
/// go.
void start(QQuickItem &tile, std::unique_ptr<QMimeData> data, Qt::DropActions actions,
           QObject *context, std::function<void()> done);

} // namespace velmo::TileDrag
