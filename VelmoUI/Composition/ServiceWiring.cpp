#include "VelmoUI/Composition/ServiceWiring.h"

#include "VelmoCore/Activity/ActivityCenter.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoCore/Foundation/Words.h"
#include "VelmoCore/Jobs/JobCenter.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoCore/Shelf/ShelfStore.h"
#include "VelmoSystem/Mail/MailBannerState.h"
#include "VelmoSystem/Mail/MailNotices.h"
#include "VelmoSystem/Mail/MailService.h"
#include "VelmoSystem/Meetings/MeetingActions.h"
#include "VelmoSystem/Notifications/SystemNotifier.h"
#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoSystem/Ports/SoundPlayer.h"
#include "VelmoUI/Composition/AppServices.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

namespace velmo::ServiceWiring {

void start(AppServices &services)
{
    services.platform.fileViewer.onFailure = [&services](const QString &description) {
        services.activity->postFailure(QStringLiteral("Não foi possível abrir"),
                                       QStringLiteral("files"), description);
    };
    services.notifier->onActivated = [&services](const Route &route) { services.openRoute(route); };
    services.jobs->onOutputs = [&services](const std::vector<QUrl> &urls) {
        services.shelf->adoptOutputs(urls);
    };
    services.mail->onNewMail = [&services](const std::vector<MailMessage> &messages) {
        const AppSettings &settings = services.settings->settings();
        if (!settings.mailNotifications || services.isPanelOpen())
            return;
        if (services.isPanelShown())
            services.mailBanner->show(messages);
        else
            services.mailNotices->show(messages, settings.mailShowsPreview);
        if (settings.mailSound)
            services.platform.sounds.play(SystemSound::tink);
    };
    // A job may have removed files, even one that failed.
    QObject::connect(services.jobs.get(), &JobCenter::runningCountChanged, services.shelf.get(),
                     &ShelfStore::lookForMissingFiles);
    services.meetings->start();
    for (NotchModule *module : services.modules->all())
        module->start();
}

void finishRestoring(AppServices &services, const PendingFiles::Restored &restored)
{
    services.shelf->forgetMissingFiles();
    if (restored.named.empty())
        return;
    const QString title = Words::count(restored.named.size(), u"1 item tem de novo o nome de antes",
                                       u"%1 itens têm de novo o nome de antes");
    services.activity->post(ActivityEvent::make(
        services.platform.scheduler.now(), QStringLiteral("arrow.uturn.backward"), title,
        FeedbackStyle::info, QStringLiteral("files"),
        QStringLiteral("O Orvane foi encerrado no meio do trabalho."), restored.named));
}

} // namespace velmo::ServiceWiring
