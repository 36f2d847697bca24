#pragma once

#include "VelmoSystem/FileProcessing/ToolsWork.h"
#include "VelmoUI/Modules/Frame/NotchModule.h"

namespace velmo {

class FileViewer;

/// What can be done with files.
class ToolsModule : public NotchModule {
public:
    /// All of them outlive this object.
    ToolsModule(ToolsSelection &selection, ToolsWork &work, JobCenter &jobs,
                ActivityCenter &activity, FileViewer &fileViewer, Scheduler &scheduler)
        : m_selection(selection), m_work(work), m_jobs(jobs), m_activity(activity),
          m_fileViewer(fileViewer), m_scheduler(scheduler)
    {
    }

    QString id() const override { return QStringLiteral("tools"); }
    QString title() const override { return QStringLiteral("Ferramentas"); }
    QString symbol() const override { return QStringLiteral("wrench.and.screwdriver"); }
    View makeView(PanelPort &panel) override;
    std::vector<Verb> verbs() override;

private:
    ToolsSelection &m_selection;
    ToolsWork &m_work;
    JobCenter &m_jobs;
    ActivityCenter &m_activity;
    FileViewer &m_fileViewer;
    Scheduler &m_scheduler;
};

} // namespace velmo
