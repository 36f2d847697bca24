#include "VelmoUI/Modules/Tools/ToolsModule.h"

#include "VelmoSystem/Verbs/FilesVerbs.h"
#include "VelmoUI/Modules/Tools/ToolsPageModel.h"

namespace velmo {

NotchModule::View ToolsModule::makeView(PanelPort &panel)
{
    return {QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Tools/ToolsPage.qml")),
            std::make_unique<ToolsPageModel>(m_selection, m_work, m_activity, m_fileViewer,
                                             m_scheduler, panel)};
}

std::vector<Verb> ToolsModule::verbs()
{
    return FilesVerbs::make(m_jobs, m_activity, m_scheduler);
}

} // namespace velmo
