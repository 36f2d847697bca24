#include "VelmoUI/Modules/Shelf/ShelfModule.h"

#include "VelmoCore/Files/PendingFiles.h"
#include "VelmoCore/Foundation/Log.h"
#include "VelmoCore/Foundation/Words.h"
#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoSystem/Verbs/ShelfVerbs.h"
#include "VelmoUI/Modules/Shelf/ShelfCardModel.h"
#include "VelmoUI/Modules/Shelf/ShelfPageModel.h"

namespace velmo {

namespace {

constexpr Seconds cleaningInterval = 21'600s;

QUrl qml(const char *name)
{
    return QUrl(QStringLiteral("qrc:/qt/qml/Velmo/Modules/Shelf/") + QLatin1String(name));
}

} // namespace

ShelfModule::ShelfModule(const ShelfServices &services, SettingsStore &settings, JobCenter &jobs,
                         ActivityCenter &activity)
    : m_services(services), m_settings(settings), m_jobs(jobs), m_activity(activity)
{
    connect(&services.shelf, &ShelfStore::issuesChanged, this, &ShelfModule::issuesChanged);
    ShelfVerbs::connectChanges(services.shelf, this, contentListener());
}

NotchModule::View ShelfModule::makeView(PanelPort &panel)
{
    return {qml("ShelfPage.qml"), std::make_unique<ShelfPageModel>(m_services, panel)};
}

std::vector<NotchModule::Card> ShelfModule::cards()
{
    return {{.card = HomeCard::shelf, .make = [this](PanelPort &panel) -> View {
                 return {qml("ShelfCard.qml"), std::make_unique<ShelfCardModel>(m_services, panel)};
             }}};
}

std::vector<NotchModule::SettingsSection> ShelfModule::settings()
{
    return {{.pane = SettingsPane::data, .source = qml("ShelfSettings.qml")}};
}

std::vector<Verb> ShelfModule::verbs()
{
    return ShelfVerbs::make(m_services.shelf, m_services.mover, m_jobs, m_activity);
}

QStringList ShelfModule::issues() const
{
    const auto count = m_services.shelf.lastReturnFailure();
    if (!count)
        return {};
    return {Words::count(
        *count, u"Mesa: 1 arquivo não pôde voltar à pasta de origem e continua na Mesa.",
        u"Mesa: %1 arquivos não puderam voltar à pasta de origem e continuam na Mesa.")};
}

void ShelfModule::dismissIssues()
{
    m_services.shelf.dismissIssues();
}

void ShelfModule::start()
{
    tidy();
    connect(&m_services.shelf, &ShelfStore::loaded, this, &ShelfModule::tidy);
}

void ShelfModule::tidy()
{
    const int moved = m_services.shelf.migrateIntoNotchFolder();
    if (!PendingFiles::hasRecords()) // else what it doesn't find may be hidden
        m_services.shelf.forgetMissingFiles();
    if (moved > 0)
        qCInfo(Log::storage).noquote()
            << QStringLiteral("Mesa: %1 itens movidos para a pasta No Notch").arg(moved);
    clean();
}

void ShelfModule::clean()
{
    const int removed = m_services.shelf.autoClean(m_settings.settings().shelfAutoCleanDays,
                                                   m_services.scheduler.now());
    if (removed > 0)
        qCInfo(Log::storage).noquote()
            << QStringLiteral("Prateleira: %1 itens antigos removidos").arg(removed);
    m_nextCleaning = m_services.scheduler.after(cleaningInterval, [this] { clean(); });
}

} // namespace velmo
