#include "VelmoUI/Modules/Activity/ActivityModule.h"

#include "VelmoSystem/Verbs/ActivityVerbs.h"
#include "VelmoUI/Modules/Activity/ActivityPageModel.h"

namespace velmo {

ActivityModule::ActivityModule(ActivityCenter &activity, FileViewer &fileViewer,
                               Scheduler &scheduler)
    : m_activity(activity), m_fileViewer(fileViewer), m_scheduler(scheduler)
{
    ActivityVerbs::connectChanges(activity, this, contentListener());
}

NotchModule::View ActivityModule::makeView(PanelPort &)
{
    return {QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Activity/ActivityPage.qml")),
            std::make_unique<ActivityPageModel>(m_activity, m_fileViewer, m_scheduler)};
}

std::vector<Verb> ActivityModule::verbs()
{
    return ActivityVerbs::make(m_activity);
}

} // namespace velmo
