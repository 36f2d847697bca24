#include "VelmoUI/Notch/PanelIssues.h"

#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

namespace velmo {

PanelIssues::PanelIssues(DataFiles &files, ModuleRegistry &modules)
    : m_files(files), m_modules(modules), m_observation(files.observe([this] { update(); }))
{
    for (NotchModule *module : modules.all())
        connect(module, &NotchModule::issuesChanged, this, &PanelIssues::update);
    update();
}

void PanelIssues::dismiss()
{
    m_files.dismissIssues();
    for (NotchModule *module : m_modules.all())
        module->dismissIssues();
}

void PanelIssues::update()
{
    QStringList texts = m_files.issues();
    for (const NotchModule *module : m_modules.all())
        texts += module->issues();
    const bool isLoading = m_files.isLoading();
    const bool isSame = texts == m_texts && isLoading == m_isLoading;
    m_texts = texts;
    m_isLoading = isLoading;
    if (!isSame)
        Q_EMIT changed();
}

} // namespace velmo
