#pragma once

#include "VelmoUI/Modules/Frame/NotchModule.h"
#include "VelmoUI/Modules/Shelf/ShelfServices.h"

namespace velmo {

/// What the user keeps in the notch.
class ShelfModule : public NotchModule {
public:
    /// All of them outlive this object.
    ShelfModule(const ShelfServices &services, SettingsStore &settings, JobCenter &jobs,
                ActivityCenter &activity);

    QString id() const override { return QStringLiteral("shelf"); }
    QString title() const override { return QStringLiteral("Prateleira"); }
    QString symbol() const override { return QStringLiteral("tray.full"); }
    View makeView(PanelPort &panel) override;
    std::vector<Card> cards() override;
    std::vector<SettingsSection> settings() override;
    std::vector<Verb> verbs() override;
    QStringList issues() const override;
    void dismissIssues() override;
    void start() override;

private:
    void tidy();
    /// Removes what has lain there for longer than the user wants, now and regularly.
    void clean();

    const ShelfServices m_services;
    SettingsStore &m_settings;
    JobCenter &m_jobs;
    ActivityCenter &m_activity;
    ScheduledTask m_nextCleaning;
};

} // namespace velmo
