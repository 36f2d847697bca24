#include "VelmoUI/Modules/Home/FavoritesModel.h"

#include "VelmoSystem/Applications/ApplicationSearch.h"

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

FavoritesModel::FavoritesModel(FavoriteApps &apps, PanelPort &panel) : m_apps(apps), m_panel(panel)
{
    connect(&apps.settings(), &SettingsStore::settingsChanged, this, &FavoritesModel::update);
    connect(&apps.applications(), &Applications::changed, this, &FavoritesModel::update);
    m_commands.setRecords({{openCommand(), QStringLiteral("Abrir"),
                            QStringLiteral("arrow.up.forward.app"), QStringLiteral("Enter")},
                           {removeCommand(), QStringLiteral("Tirar dos favoritos"),
                            QStringLiteral("star.fill"), QStringLiteral("Delete")}});
    update();
}

void FavoritesModel::watch(bool isWatched)
{
    if (!isWatched)
        forgetRemoved();
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
    m_apps.launch(id);
    m_panel.close();
}

void FavoritesModel::remove(const QString &id)
{
    const int place = placeOf(id);
    if (place < 0)
        return;
    m_removed = {id, m_favorites.records()[std::size_t(place)].name, place};
    m_apps.remove(id);
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
    m_apps.add(std::vector{removed.id});
    m_apps.move(removed.id, removed.place);
}

void FavoritesModel::forgetRemoved()
{
    m_removed = {};
    Q_EMIT changed();
}

void FavoritesModel::move(const QString &id, int by)
{
    m_apps.move(id, placeOf(id) + by);
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
        m_apps.remove(id);
    else
        m_apps.add(std::vector{id});
}

void FavoritesModel::addFirst()
{
    if (hasFound())
        m_apps.add(std::vector{m_found.records().front().id});
}

void FavoritesModel::update()
{
    std::vector<ApplicationRow> rows;
    for (const auto &application : m_apps.rows())
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
    for (const auto &application : ApplicationSearch::find(m_apps.applications(), m_query))
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
