#include "VelmoUI/Notch/PanelEngine.h"

#include <QUrl>

namespace velmo {

PanelEngine::PanelEngine() : m_view(this)
{
    addImportPath(QStringLiteral("qrc:/qt/qml"));
    m_view.loadUrl(viewUrl(), QQmlComponent::Asynchronous);
}

QUrl PanelEngine::viewUrl()
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Notch/NotchView.qml"));
}

} // namespace velmo
