#include "VelmoUI/App/ServiceWiring.h"

#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Ports/FileViewer.h"
#include "VelmoSystem/Ports/SoundPlayer.h"
#include "VelmoUI/App/AppServices.h"

namespace velmo::ServiceWiring {

namespace {

constexpr Seconds shelfCleaningInterval = 21'600s;
const QString notesModule = QStringLiteral("notes");

void tidyShelf(AppServices &services)
{
    const int moved = services.shelf.migrateIntoNotchFolder();
    if (!PendingFiles::hasRecords()) // else what it doesn't find may be hidden
        services.shelf.forgetMissingFiles();
    if (moved > 0)
        qCInfo(Log::storage).noquote()
            << QStringLiteral("Mesa: %1 itens movidos para a pasta No Notch").arg(moved);
    cleanShelf(services);
}

void startShelf(AppServices &services)
{
    services.jobs.onOutputs = [&services](const std::vector<QUrl> &urls) {
        services.shelf.adoptOutputs(urls);
    };
    // Whatever a job came to, it may have taken files away.
    QObject::connect(&services.jobs, &JobCenter::runningCountChanged, &services.shelf,
                     &ShelfStore::lookForMissingFiles);
    tidyShelf(services);
    QObject::connect(&services.shelf, &ShelfStore::loaded, &services.shelf,
                     [&services] { tidyShelf(services); });
}

/// How the user hears of what ended: its words and its symbol.
struct CompletionText {
    QString title;
    QString detail;
    QString symbol;
};

CompletionText completionText(const TimerCenter::TimerCompletion &completion)
{
    return {QStringLiteral("Timer concluído"), completion.timer.label, QStringLiteral("timer")};
}

CompletionText completionText(const TimerCenter::PomodoroCompletion &completion)
{
    const QString detail =
        QStringLiteral("Próxima etapa: %1").arg(Pomodoro::title(completion.next));
    if (completion.finished == PomodoroPhase::focus)
        return {QStringLiteral("Foco concluído"), detail, QStringLiteral("checkmark.circle.fill")};
    return {QStringLiteral("%1 concluída").arg(Pomodoro::title(completion.finished)), detail,
            QStringLiteral("brain.head.profile")};
}

void announce(AppServices &services, const CompletionText &text)
{
    const QString source = QStringLiteral("timers");
    services.activity.post(ActivityEvent::make(services.platform.scheduler.now(), text.symbol,
                                               text.title, FeedbackStyle::success, source,
                                               text.detail));
    if (services.settings.settings().timerSoundEnabled)
        services.platform.sounds.play(SystemSound::glass);
    services.notifier.send(source + u'.' + uuidText(makeUuid()), {text.title, text.detail}, source);
}

void startTimers(AppServices &services)
{
    services.timers.onCompletion = [&services](const TimerCenter::Completion &completion) {
        announce(services,
                 std::visit([](const auto &one) { return completionText(one); }, completion));
    };
    services.timers.evaluate();
}

SystemNotifier::Notification reminder(const TaskItem &task)
{
    return {QStringLiteral("Lembrete"), task.title};
}

void remind(AppServices &services, const TaskItem &task)
{
    const QString identifier = uuidText(task.id);
    services.notifier.cancel(identifier);
    if (task.due && !task.isDone && *task.due > services.platform.scheduler.now())
        services.notifier.schedule(identifier, reminder(task), *task.due, notesModule);
}

void remindOfAll(AppServices &services)
{
    for (const TaskItem &task : services.notes.tasks())
        remind(services, task);
    for (const TaskItem &task : services.notes.takeMissedReminders())
        services.notifier.send(uuidText(task.id), reminder(task), notesModule);
}

void startNotes(AppServices &services)
{
    services.notes.onTaskReminderChanged = [&services](const TaskItem &task) {
        remind(services, task);
    };
    remindOfAll(services);
    QObject::connect(&services.notes, &NotesStore::loaded, &services.notes,
                     [&services] { remindOfAll(services); });
}

void settingsChanged(AppServices &services, const AppSettings &before, const AppSettings &after)
{
    if (before.clipboardEnabled != after.clipboardEnabled ||
        before.clipboardMaxItems != after.clipboardMaxItems ||
        before.clipboardRetentionDays != after.clipboardRetentionDays)
        applyClipboardSettings(services);
}

} // namespace

void start(AppServices &services)
{
    services.platform.fileViewer.onFailure = [&services](const QString &description) {
        services.activity.postFailure(QStringLiteral("Não foi possível abrir"),
                                      QStringLiteral("files"), description);
    };
    services.notifier.onActivated = [&services](const QString &moduleID) {
        if (moduleID.isEmpty())
            services.showNotch();
        else
            services.openModule(moduleID);
    };
    startShelf(services);
    startTimers(services);
    startNotes(services);
    applyClipboardSettings(services);
    QObject::connect(
        &services.clipboard, &ClipboardStore::loaded, &services.clipboard,
        [&services] { services.clipboard.enforceLimits(services.platform.scheduler.now()); });
    services.settings.observe([&services](const AppSettings &before, const AppSettings &after) {
        settingsChanged(services, before, after);
    });
    services.connectivity.start();
}

void finishRestoring(AppServices &services, const PendingFiles::Restored &restored)
{
    services.shelf.forgetMissingFiles();
    if (restored.named.empty())
        return;
    const std::size_t count = restored.named.size();
    const QString title = count == 1
                              ? QStringLiteral("1 item tem de novo o nome de antes")
                              : QStringLiteral("%L1 itens têm de novo o nome de antes").arg(count);
    services.activity.post(ActivityEvent::make(
        services.platform.scheduler.now(), QStringLiteral("arrow.uturn.backward"), title,
        FeedbackStyle::info, QStringLiteral("files"),
        QStringLiteral("O Orvane foi encerrado no meio do trabalho."), restored.named));
}

void applyClipboardSettings(AppServices &services)
{
    const AppSettings &settings = services.settings.settings();
    services.clipboard.setLimits(settings.clipboardMaxItems, settings.clipboardRetentionDays);
    services.clipboard.enforceLimits(services.platform.scheduler.now());
    if (settings.clipboardEnabled)
        services.clipboardMonitor.start();
    else
        services.clipboardMonitor.stop();
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
