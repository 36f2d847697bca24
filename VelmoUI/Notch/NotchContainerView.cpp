#include "VelmoUI/Notch/NotchContainerView.h"

#include <QMimeData>

namespace velmo {

namespace {

Point pointFrom(const QPointF &position)
{
    return {position.x(), position.y()};
}

/// Orvane never takes a file away from the application it is dragged from.
void acceptAsCopy(QDropEvent *event)
{
    event->setDropAction(Qt::CopyAction);
    event->accept();
}

} // namespace

NotchContainerView::NotchContainerView(QQuickItem *parent) : QQuickItem(parent)
{
    setAcceptedMouseButtons(Qt::LeftButton);
    setFlag(ItemAcceptsDrops);
}

void NotchContainerView::mousePressEvent(QMouseEvent *event)
{
    event->accept();
}

void NotchContainerView::mouseReleaseEvent(QMouseEvent *event)
{
    if (m_handlers.tapped && contains(event->position()))
        m_handlers.tapped();
}

void NotchContainerView::dragEnterEvent(QDragEnterEvent *event)
{
    const bool isOwn = event->source(); // on its way out of a page, which has to stay
    if (isOwn || (!event->mimeData()->hasUrls() && !event->mimeData()->hasText())) {
        event->ignore();
        return;
    }
    if (m_handlers.draggingEntered)
        m_handlers.draggingEntered();
    acceptAsCopy(event);
}

void NotchContainerView::dragMoveEvent(QDragMoveEvent *event)
{
    if (m_handlers.draggingUpdated)
        m_handlers.draggingUpdated(pointFrom(event->position()));
    acceptAsCopy(event);
}

void NotchContainerView::dragLeaveEvent(QDragLeaveEvent *event)
{
    if (m_handlers.draggingExited)
        m_handlers.draggingExited();
    event->accept();
}

void NotchContainerView::dropEvent(QDropEvent *event)
{
    const DropReader::Contents contents = DropReader::read(*event->mimeData());
    if (m_handlers.performDrop && m_handlers.performDrop(pointFrom(event->position()), contents))
        acceptAsCopy(event);
    else
        event->ignore();
}

} // namespace velmo
