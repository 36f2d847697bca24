#pragma once

#include "VelmoCore/Foundation/Geometry.h"

#include <QQuickItem>
#include <QtQml/qqmlregistration.h>

#include <functional>

namespace velmo {

/// The root item of a panel's window: takes taps beside the content's own controls, and what is
/// dragged over it. Drops come to the window.
class NotchContainerView : public QQuickItem {
    Q_OBJECT
    QML_ELEMENT

public:
    /// What the view reports. Points are in the window, y downward.
    struct Handlers {
        std::function<void()> tapped;
        std::function<void()> draggingEntered;
        /// Whether files would be moved from where they stand, if they fell there.
        std::function<bool(Point)> draggingUpdated;
        std::function<void()> draggingExited;
    };

    explicit NotchContainerView(QQuickItem *parent = nullptr);

    void setHandlers(Handlers handlers) { m_handlers = std::move(handlers); }

protected:
    void mousePressEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void dragEnterEvent(QDragEnterEvent *event) override;
    void dragMoveEvent(QDragMoveEvent *event) override;
    void dragLeaveEvent(QDragLeaveEvent *event) override;

private:
    Handlers m_handlers;
};

} // namespace velmo
