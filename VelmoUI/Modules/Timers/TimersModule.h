#pragma once

#include "VelmoUI/Modules/Frame/NotchModule.h"

namespace velmo {

class ActivityCenter;
class SettingsStore;
class SoundPlayer;
class SystemNotifier;
class TimerCenter;

/// Countdowns and the pomodoro.
class TimersModule : public NotchModule {
public:
    /// All of them outlive this object.
    TimersModule(TimerCenter &timers, SettingsStore &settings, ActivityCenter &activity,
                 SystemNotifier &notifier, SoundPlayer &sounds, Scheduler &scheduler);

    QString id() const override { return QStringLiteral("timers"); }
    QString title() const override { return QStringLiteral("Timers"); }
    QString symbol() const override { return QStringLiteral("timer"); }
    View makeView(PanelPort &panel) override;
    std::vector<Card> cards() override;
    std::vector<SettingsSection> settings() override;
    std::vector<Verb> verbs() override;
    void start() override;

private:
    struct Announcement;

    /// How the user hears of what ended.
    void announce(const Announcement &announcement);

    TimerCenter &m_timers;
    SettingsStore &m_settings;
    ActivityCenter &m_activity;
    SystemNotifier &m_notifier;
    SoundPlayer &m_sounds;
    Scheduler &m_scheduler;
};

} // namespace velmo
