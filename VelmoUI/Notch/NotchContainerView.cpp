#include "VelmoUI/Notch/NotchContainerView.h"

#include <QMimeData>

namespace velmo {

namespace {

Point pointFrom(const QPointF &position)
{
    return {position.x(), position.y()};
}

/// The pointer shows the action, as far as the source allows it.
void accept(QDropEvent *event, bool moves)
{
    const bool isMove =
        moves && event->mimeData()->hasUrls() && event->possibleActions().testFlag(Qt::MoveAction);
    event->setDropAction(isMove ? Qt::MoveAction : Qt::CopyAction);
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
    accept(event, false); // a move of the pointer follows
}

void NotchContainerView::dragMoveEvent(QDragMoveEvent *event)
{
    accept(event,
           m_handlers.draggingUpdated && m_handlers.draggingUpdated(pointFrom(event->position())));
}

void NotchContainerView::dragLeaveEvent(QDragLeaveEvent *event)
{
    if (m_handlers.draggingExited)
        m_handlers.draggingExited();
    event->accept();
}

} // namespace velmo
