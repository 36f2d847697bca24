#include "VelmoUI/Modules/Home/FavoriteApps.h"

#include "VelmoUI/App/AppServices.h"

#include <algorithm>

namespace velmo {

namespace {

void tell(FeedbackStyle style, const QString &symbol, const QString &title,
          const std::optional<QString> &detail, AppServices &services)
{
    services.activity.post(ActivityEvent::make(services.platform.scheduler.now(), symbol, title,
                                               style, QStringLiteral("home"), detail),
                           ActivityCenter::Presentation::transientOnly);
}

void addInstalled(const std::vector<std::optional<QString>> &ids, AppServices &services)
{
    StringList favorites = services.settings.settings().favoriteApps;
    std::size_t shown = FavoriteApps::rows(services).size();
    bool isFull = false;
    for (const auto &id : ids) {
        if (!id || std::ranges::find(favorites, *id) != favorites.end())
            continue;
        if (shown == FavoriteApps::limit) {
            isFull = true;
            break;
        }
        favorites.push_back(*id);
        ++shown;
    }
    services.settings.update([&](AppSettings &next) { next.favoriteApps = favorites; });
    if (isFull)
        tell(FeedbackStyle::info, QStringLiteral("square.grid.2x2"),
             QStringLiteral("Favoritos cheios"),
             QStringLiteral("O limite é de %1 aplicativos. Remova um para adicionar outro.")
                 .arg(FavoriteApps::limit),
             services);
    else if (!std::ranges::all_of(ids, &std::optional<QString>::has_value))
        tell(FeedbackStyle::error, QStringLiteral("exclamationmark.triangle.fill"),
             QStringLiteral("Só aplicativos instalados podem ser favoritos."), std::nullopt,
             services);
}

} // namespace

void FavoriteApps::add(const std::vector<QUrl> &urls, AppServices &services)
{
    std::vector<std::optional<QString>> ids;
    ids.reserve(urls.size());
    for (const QUrl &url : urls)
        ids.push_back(services.platform.applications.idOf(url));
    addInstalled(ids, services);
}

void FavoriteApps::add(const std::vector<QString> &ids, AppServices &services)
{
    std::vector<std::optional<QString>> installed;
    installed.reserve(ids.size());
    for (const QString &id : ids)
        installed.push_back(services.platform.applications.find(id) ? std::optional(id)
                                                                    : std::nullopt);
    addInstalled(installed, services);
}

void FavoriteApps::remove(const QString &id, AppServices &services)
{
    services.settings.update([&](AppSettings &next) { std::erase(next.favoriteApps, id); });
}

void FavoriteApps::move(const QString &id, int index, AppServices &services)
{
    auto others = rows(services);
    if (std::erase_if(others, [&](const auto &row) { return row.id == id; }) == 0 || others.empty())
        return;
    services.settings.update([&](AppSettings &next) {
        StringList &favorites = next.favoriteApps;
        const auto place = std::min(std::size_t(std::max(index, 0)), others.size());
        std::erase(favorites, id);
        const QString &neighbour = others[place == 0 ? 0 : place - 1].id;
        favorites.insert(std::ranges::find(favorites, neighbour) + (place == 0 ? 0 : 1), id);
    });
}

std::vector<Applications::Application> FavoriteApps::rows(const AppServices &services)
{
    std::vector<Applications::Application> rows;
    for (const QString &id : services.settings.settings().favoriteApps) {
        if (auto application = services.platform.applications.find(id))
            rows.push_back(std::move(*application));
    }
    return rows;
}

} // namespace velmo
