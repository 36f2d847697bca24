#include "VelmoUI/App/ServiceWiring.h"

#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoUI/App/AppServices.h"

namespace velmo::ServiceWiring {

void start(AppServices &services)
{
    services.platform.fileViewer.onFailure = [&services](const QString &description) {
        services.activity.post(ActivityEvent::make(
            services.platform.scheduler.now(), QStringLiteral("exclamationmark.triangle.fill"),
            QStringLiteral("Não foi possível abrir"), FeedbackStyle::error, QStringLiteral("files"),
            description));
    };
    services.notifier.onActivated = [&services](const QString &moduleID) {
        if (moduleID.isEmpty())
            services.showNotch();
        else
            services.openModule(moduleID);
    };
    services.connectivity.start();
}

} // namespace velmo::ServiceWiring
