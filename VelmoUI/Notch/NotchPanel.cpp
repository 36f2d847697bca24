#include "VelmoUI/Notch/NotchPanel.h"

#include "VelmoUI/Notch/NotchContainerView.h"
#include "VelmoUI/Notch/NotchContent.h"
#include "VelmoUI/Notch/PanelEngine.h"

namespace velmo {

NotchPanel::NotchPanel(QQmlEngine &engine, NotchContent &content, PanelWindowFactory &factory)
    : m_view(&engine, nullptr)
{
    m_view.setFlags(Qt::Window | Qt::FramelessWindowHint | Qt::BypassWindowManagerHint |
                    Qt::NoDropShadowWindowHint);
    m_view.setColor(Qt::transparent);
    m_view.setResizeMode(QQuickView::SizeRootObjectToView);
    m_view.setTitle(QStringLiteral("Orvane"));
    m_view.setInitialProperties({{QStringLiteral("content"), QVariant::fromValue(&content)}});
    m_view.setSource(PanelEngine::viewUrl());
    m_container = qobject_cast<NotchContainerView *>(m_view.rootObject());
    if (!m_container)
        qFatal("The panel's view doesn't load");
    m_window = factory.adopt(m_view);
}

NotchPanel::~NotchPanel() = default;

} // namespace velmo
