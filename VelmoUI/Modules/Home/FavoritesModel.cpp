#include "VelmoUI/Modules/Home/FavoritesModel.h"

#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/App/ApplicationSearch.h"
#include "VelmoUI/Modules/Home/FavoriteApps.h"

#include <algorithm>

namespace velmo {

namespace {

ApplicationRow row(const Applications::Application &application, bool isFavorite)
{
    return {application.id, application.name, ApplicationSearch::iconSource(application),
            isFavorite,
            isFavorite ? QStringLiteral("%1, favorito").arg(application.name) : application.name};
}

QString openCommand()
{
    return QStringLiteral("open");
}

QString removeCommand()
{
    return QStringLiteral("remove");
}

} // namespace

FavoritesModel::FavoritesModel(const ModuleContext &context) : m_context(context)
{
    connect(&context.services.settings, &SettingsStore::settingsChanged, this,
            &FavoritesModel::update);
    connect(&context.services.platform.applications, &Applications::changed, this,
            &FavoritesModel::update);
    m_commands.setRecords({{openCommand(), QStringLiteral("Abrir"),
                            QStringLiteral("arrow.up.forward.app"), QStringLiteral("Enter")},
                           {removeCommand(), QStringLiteral("Tirar dos favoritos"),
                            QStringLiteral("star.fill"), QStringLiteral("Delete")}});
    update();
}

QString FavoritesModel::count() const
{
    const auto count = m_favorites.records().size();
    return count < FavoriteApps::limit
               ? QStringLiteral("%1 de %2").arg(count).arg(FavoriteApps::limit)
               : QStringLiteral("Favoritos cheios");
}

void FavoritesModel::launch(const QString &id)
{
    AppServices &services = m_context.services;
    try {
        services.platform.applications.launch(id);
    } catch (const LocalizedError &error) {
        services.activity.postFailure(QStringLiteral("Não foi possível abrir"),
                                      QStringLiteral("home"), error.description());
    }
    m_context.close();
}

void FavoritesModel::remove(const QString &id)
{
    const int place = placeOf(id);
    if (place < 0)
        return;
    m_removed = {id, m_favorites.records()[std::size_t(place)].name, place};
    FavoriteApps::remove(id, m_context.services);
}

void FavoritesModel::run(const QString &command, const QString &id)
{
    if (command == openCommand())
        launch(id);
    else if (command == removeCommand())
        remove(id);
}

void FavoritesModel::undoRemove()
{
    const Removed removed = std::exchange(m_removed, {});
    FavoriteApps::add(std::vector{removed.id}, m_context.services);
    FavoriteApps::move(removed.id, removed.place, m_context.services);
}

void FavoritesModel::forgetRemoved()
{
    m_removed = {};
    Q_EMIT changed();
}

void FavoritesModel::move(const QString &id, int by)
{
    FavoriteApps::move(id, placeOf(id) + by, m_context.services);
}

void FavoritesModel::startPicking()
{
    m_isPicking = true;
    m_query.clear();
    forgetRemoved();
    updateFound();
    Q_EMIT pickingChanged();
}

void FavoritesModel::stopPicking()
{
    m_isPicking = false;
    Q_EMIT pickingChanged();
    m_found.setRecords({});
}

void FavoritesModel::search(const QString &text)
{
    m_query = text;
    updateFound();
}

void FavoritesModel::toggle(const QString &id)
{
    if (placeOf(id) >= 0)
        FavoriteApps::remove(id, m_context.services);
    else
        FavoriteApps::add(std::vector{id}, m_context.services);
}

void FavoritesModel::addFirst()
{
    if (hasFound())
        FavoriteApps::add(std::vector{m_found.records().front().id}, m_context.services);
}

void FavoritesModel::update()
{
    std::vector<ApplicationRow> rows;
    for (const auto &application : FavoriteApps::rows(m_context.services))
        rows.push_back(row(application, true));
    m_favorites.setRecords(rows);
    if (placeOf(m_removed.id) >= 0)
        m_removed = {};
    if (m_isPicking)
        updateFound();
    Q_EMIT changed();
}

void FavoritesModel::updateFound()
{
    std::vector<ApplicationRow> rows;
    for (const auto &application :
         ApplicationSearch::find(m_context.services.platform.applications, m_query))
        rows.push_back(row(application, placeOf(application.id) >= 0));
    m_found.setRecords(rows);
    Q_EMIT foundChanged();
}

int FavoritesModel::placeOf(const QString &id) const
{
    const auto &rows = m_favorites.records();
    const auto found = std::ranges::find(rows, id, &ApplicationRow::id);
    return found == rows.end() ? -1 : int(found - rows.begin());
}

} // namespace velmo
