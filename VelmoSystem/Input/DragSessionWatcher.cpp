#include "VelmoSystem/Input/DragSessionWatcher.h"

#include <utility>

namespace velmo {

DragSessionWatcher::DragSessionWatcher(const DragPasteboard &pasteboard)
    : m_pasteboard(pasteboard), m_baseline(pasteboard.changeCount())
{
}

void DragSessionWatcher::mouseDown()
{
    m_baseline = m_pasteboard.changeCount();
    m_isDraggingContent = false;
}

bool DragSessionWatcher::mouseDragged()
{
    if (!m_isDraggingContent && m_pasteboard.changeCount() != m_baseline) {
        const auto contents = m_pasteboard.contents();
        m_isDraggingContent =
            contents.hasFiles || contents.hasLinks || contents.hasText || contents.isUntold;
    }
    return m_isDraggingContent;
}

bool DragSessionWatcher::mouseUp()
{
    return std::exchange(m_isDraggingContent, false);
}

} // namespace velmo
