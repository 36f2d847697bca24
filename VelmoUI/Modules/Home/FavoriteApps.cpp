#include "VelmoUI/Modules/Home/FavoriteApps.h"

#include "VelmoCore/Foundation/Scheduler.h"

#include <algorithm>

namespace velmo {

void FavoriteApps::add(const std::vector<QUrl> &urls)
{
    std::vector<std::optional<QString>> ids;
    ids.reserve(urls.size());
    for (const QUrl &url : urls)
        ids.push_back(m_applications.idOf(url));
    addInstalled(ids);
}

void FavoriteApps::add(const std::vector<QString> &ids)
{
    std::vector<std::optional<QString>> installed;
    installed.reserve(ids.size());
    for (const QString &id : ids)
        installed.push_back(m_applications.find(id) ? std::optional(id) : std::nullopt);
    addInstalled(installed);
}

void FavoriteApps::remove(const QString &id)
{
    m_settings.update([&](AppSettings &next) { std::erase(next.favoriteApps, id); });
}

void FavoriteApps::move(const QString &id, int index)
{
    auto others = rows();
    if (std::erase_if(others, [&](const auto &row) { return row.id == id; }) == 0 || others.empty())
        return;
    m_settings.update([&](AppSettings &next) {
        StringList &favorites = next.favoriteApps;
        const auto place = std::min(std::size_t(std::max(index, 0)), others.size());
        std::erase(favorites, id);
        const QString &neighbour = others[place == 0 ? 0 : place - 1].id;
        favorites.insert(std::ranges::find(favorites, neighbour) + (place == 0 ? 0 : 1), id);
    });
}

std::vector<Applications::Application> FavoriteApps::rows() const
{
    std::vector<Applications::Application> rows;
    for (const QString &id : m_settings.settings().favoriteApps) {
        if (auto application = m_applications.find(id))
            rows.push_back(std::move(*application));
    }
    return rows;
}

void FavoriteApps::launch(const QString &id)
{
    try {
        m_applications.launch(id);
    } catch (const LocalizedError &error) {
        m_activity.postFailure(QStringLiteral("Não foi possível abrir"), QStringLiteral("home"),
                               error.description());
    }
}

void FavoriteApps::addInstalled(const std::vector<std::optional<QString>> &ids)
{
    StringList favorites = m_settings.settings().favoriteApps;
    std::size_t shown = rows().size();
    bool isFull = false;
    for (const auto &id : ids) {
        if (!id || std::ranges::find(favorites, *id) != favorites.end())
            continue;
        if (shown == limit) {
            isFull = true;
            break;
        }
        favorites.push_back(*id);
        ++shown;
    }
    m_settings.update([&](AppSettings &next) { next.favoriteApps = favorites; });
    if (isFull)
        notify(FeedbackStyle::info, QStringLiteral("square.grid.2x2"),
               QStringLiteral("Favoritos cheios"),
               QStringLiteral("O limite é de %1 aplicativos. Remova um para adicionar outro.")
                   .arg(limit));
    else if (!std::ranges::all_of(ids, &std::optional<QString>::has_value))
        notify(FeedbackStyle::error, QStringLiteral("exclamationmark.triangle.fill"),
               QStringLiteral("Só aplicativos instalados podem ser favoritos."), std::nullopt);
}

void FavoriteApps::notify(FeedbackStyle style, const QString &symbol, const QString &title,
                          const std::optional<QString> &detail)
{
    m_activity.post(ActivityEvent::make(m_scheduler.now(), symbol, title, style,
                                        QStringLiteral("home"), detail),
                    ActivityCenter::Presentation::transientOnly);
}

} // namespace velmo
