#include "VelmoUI/Modules/Frame/TilePage.h"

namespace velmo {

TilePage::TilePage(Scheduler &scheduler) : m_undo(scheduler)
{
    connect(&m_undo, &UndoStack::changed, this, &TilePage::changed);
}

QString TilePage::summary() const
{
    return canUndo() ? m_undo.title() : m_notice.isEmpty() ? state() : m_notice;
}

void TilePage::say(const QString &notice)
{
    m_notice = notice;
    Q_EMIT changed();
}

} // namespace velmo
