#pragma once

#include "VelmoSystem/Ports/DragPasteboard.h"

namespace velmo {

/// Distinguishes a real drag of content from an ordinary press and move.
class DragSessionWatcher {
public:
    explicit DragSessionWatcher(const DragPasteboard &pasteboard);

    void mouseDown();
    /// Whether content is being dragged since the press.
    bool mouseDragged();
    /// Whether content was being dragged; it no longer is.
    bool mouseUp();

private:
    const DragPasteboard &m_pasteboard;
    std::uint64_t m_baseline;
    bool m_isDraggingContent = false;
};

} // namespace velmo
