#include "VelmoUI/Composition/Renderer.h"

#include <QDir>
#include <QQuickWindow>

namespace velmo {

void Renderer::choose()
{
    QQuickWindow::setDefaultAlphaBuffer(true);
    QQuickWindow::setTextRenderType(QQuickWindow::NativeTextRendering);
    if (qEnvironmentVariableIsSet("QT_QUICK_BACKEND") ||
        qEnvironmentVariableIsSet("QSG_RHI_BACKEND"))
        return;
    const bool hasGPU = !QDir(QStringLiteral("/dev/dri"))
                             .entryList({QStringLiteral("renderD*")}, QDir::System)
                             .isEmpty();
    if (!hasGPU)
        QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
}

} // namespace velmo
