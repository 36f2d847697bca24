#include "VelmoUI/Notch/PanelIssues.h"

#include "VelmoUI/App/AppServices.h"

namespace velmo {

namespace {

QString returnFailure(int count)
{
    return count == 1 ? QStringLiteral("Mesa: 1 arquivo não pôde voltar à pasta de origem e "
                                       "continua na Mesa.")
                      : QStringLiteral("Mesa: %L1 arquivos não puderam voltar à pasta de origem e "
                                       "continuam na Mesa.")
                            .arg(count);
}

} // namespace

PanelIssues::PanelIssues(AppServices &services)
    : m_services(services), m_files(services.files.observe([this] { update(); }))
{
    connect(&services.settings, &SettingsStore::issuesChanged, this, &PanelIssues::update);
    connect(&services.shelf, &ShelfStore::issuesChanged, this, &PanelIssues::update);
    update();
}

void PanelIssues::dismiss()
{
    m_services.settings.dismissIssues();
    m_services.files.dismissIssues();
    m_services.shelf.dismissIssues(); // also of what isn't about its file
}

void PanelIssues::update()
{
    QStringList texts = m_services.settings.issues() + m_services.files.issues();
    if (const auto count = m_services.shelf.lastReturnFailure())
        texts.append(returnFailure(*count));
    const bool isLoading = m_services.files.isLoading();
    const bool isSame = texts == m_texts && isLoading == m_isLoading;
    m_texts = texts;
    m_isLoading = isLoading;
    if (!isSame)
        Q_EMIT changed();
}

} // namespace velmo
