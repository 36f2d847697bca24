#include "VelmoUI/App/ServiceWiring.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoUI/App/AppServices.h"

namespace velmo::ServiceWiring {

namespace {

constexpr Seconds shelfCleaningInterval = 21'600s;

void startShelf(AppServices &services)
{
    const int moved = services.shelf.migrateIntoNotchFolder();
    services.shelf.forgetMissingFiles();
    if (moved > 0)
        qCInfo(Log::storage).noquote()
            << QStringLiteral("Mesa: %1 itens movidos para a pasta No Notch").arg(moved);
    services.jobs.onOutputs = [&services](const std::vector<QUrl> &urls) {
        services.shelf.adoptOutputs(urls);
    };
    cleanShelf(services);
}

} // namespace

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
    startShelf(services);
    services.connectivity.start();
}

void cleanShelf(AppServices &services)
{
    const int removed = services.shelf.autoClean(services.settings.settings().shelfAutoCleanDays,
                                                 services.platform.scheduler.now());
    if (removed > 0)
        qCInfo(Log::storage).noquote()
            << QStringLiteral("Prateleira: %1 itens antigos removidos").arg(removed);
    services.shelfCleaning = services.platform.scheduler.after(
        shelfCleaningInterval, [&services] { cleanShelf(services); });
}

} // namespace velmo::ServiceWiring
