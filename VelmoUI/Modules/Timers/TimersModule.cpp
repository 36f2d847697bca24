#include "VelmoUI/Modules/Timers/TimersModule.h"

#include "VelmoSystem/Notifications/SystemNotifier.h"
#include "VelmoSystem/Ports/SoundPlayer.h"
#include "VelmoSystem/Verbs/TimerVerbs.h"
#include "VelmoUI/Modules/Timers/TimersPageModel.h"

namespace velmo {

struct TimersModule::Announcement {
    QString title;
    QString detail;
    QString symbol;

    explicit Announcement(const TimerCenter::TimerCompletion &completion)
        : title(QStringLiteral("Timer concluído")), detail(completion.timer.label),
          symbol(QStringLiteral("timer"))
    {
    }
    explicit Announcement(const TimerCenter::PomodoroCompletion &completion)
        : title(QStringLiteral("%1 concluída").arg(Pomodoro::title(completion.finished))),
          detail(QStringLiteral("Próxima etapa: %1").arg(Pomodoro::title(completion.next))),
          symbol(QStringLiteral("brain.head.profile"))
    {
        if (completion.finished == PomodoroPhase::focus) {
            title = QStringLiteral("Foco concluído");
            symbol = QStringLiteral("checkmark.circle.fill");
        }
    }
};

namespace {

QUrl qml(const char *name)
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Timers/") + QLatin1String(name));
}

} // namespace

TimersModule::TimersModule(TimerCenter &timers, SettingsStore &settings, ActivityCenter &activity,
                           SystemNotifier &notifier, SoundPlayer &sounds, Scheduler &scheduler)
    : m_timers(timers), m_settings(settings), m_activity(activity), m_notifier(notifier),
      m_sounds(sounds), m_scheduler(scheduler)
{
    connect(&timers, &TimerCenter::changed, this, &TimersModule::cardsChanged);
    TimerVerbs::connectChanges(timers, this, contentListener());
}

NotchModule::View TimersModule::makeView(PanelPort &)
{
    return {qml("TimersPage.qml"),
            std::make_unique<TimersPageModel>(m_timers, m_settings, m_scheduler)};
}

std::vector<NotchModule::Card> TimersModule::cards()
{
    return {{.card = HomeCard::focus,
             .make = [this](PanelPort &) -> View {
                 return {qml("FocusCard.qml"),
                         std::make_unique<TimersPageModel>(m_timers, m_settings, m_scheduler)};
             },
             .isActive = [this] { return m_timers.isRunning(); }}};
}

std::vector<NotchModule::SettingsSection> TimersModule::settings()
{
    return {{.pane = SettingsPane::modules, .source = qml("TimerSettings.qml")}};
}

std::vector<Verb> TimersModule::verbs()
{
    return TimerVerbs::make(m_timers, m_scheduler);
}

void TimersModule::start()
{
    m_timers.onCompletion = [this](const TimerCenter::Completion &completion) {
        std::visit([this](const auto &one) { announce(Announcement(one)); }, completion);
    };
    m_timers.evaluate();
}

void TimersModule::announce(const Announcement &announcement)
{
    m_activity.post(ActivityEvent::make(m_scheduler.now(), announcement.symbol, announcement.title,
                                        FeedbackStyle::success, id(), announcement.detail));
    if (m_settings.settings().timerSoundEnabled)
        m_sounds.play(SystemSound::glass);
    m_notifier.send(id() + u'.' + uuidText(makeUuid()), {announcement.title, announcement.detail},
                    Route{.module = id()});
}

} // namespace velmo
