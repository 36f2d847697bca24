#pragma once

#include "VelmoUI/Modules/Frame/NotchModule.h"

namespace velmo {

class ActivityCenter;
class FileViewer;
class Scheduler;

/// What is going on and what has just happened.
class ActivityModule : public NotchModule {
public:
    /// All of them outlive this object.
    ActivityModule(ActivityCenter &activity, FileViewer &fileViewer, Scheduler &scheduler);

    QString id() const override { return QStringLiteral("activity"); }
    QString title() const override { return QStringLiteral("Atividade"); }
    QString symbol() const override { return QStringLiteral("waveform.path.ecg"); }
    View makeView(PanelPort &panel) override;
    std::vector<Verb> verbs() override;

private:
    ActivityCenter &m_activity;
    FileViewer &m_fileViewer;
    Scheduler &m_scheduler;
};

} // namespace velmo
