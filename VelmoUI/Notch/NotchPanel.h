#pragma once

#include "VelmoSystem/Ports/PanelWindow.h"

#include <QQuickView>

#include <functional>
#include <memory>

class QQmlEngine;

namespace velmo {

class NotchContainerView;
class NotchContent;

/// The window of one panel: borderless, see-through, above all others, as large as the canvas for
/// good. Only what is drawn in it changes.
class NotchPanel {
public:
    /// `content` and `engine` outlive the panel. It isn't shown yet.
    NotchPanel(QQmlEngine &engine, NotchContent &content, PanelWindowFactory &factory);
    ~NotchPanel();

    PanelWindow &window() { return *m_window; }
    NotchContainerView &container() { return *m_container; }
    QQuickView &view() { return m_view; }
    const QQuickView &view() const { return m_view; }

private:
    QQuickView m_view;
    std::unique_ptr<PanelWindow> m_window;
    NotchContainerView *m_container;
};

} // namespace velmo
