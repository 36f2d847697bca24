#include "VelmoUI/Modules/Home/HomeSettingsModel.h"

#include "VelmoSystem/Applications/ApplicationSearch.h"

#include <algorithm>

namespace velmo {

HomeSettingsModel::HomeSettingsModel(const HomeCardSources &sources, FavoriteApps &favorites)
    : m_sources(sources), m_settings(sources.settings), m_apps(favorites)
{
    connect(&m_settings, &SettingsStore::settingsChanged, this, &HomeSettingsModel::update);
    connect(&favorites.applications(), &Applications::changed, this, &HomeSettingsModel::update);
    update();
}

void HomeSettingsModel::moveCard(int from, int to)
{
    m_settings.update([&](AppSettings &next) {
        StringList order = next.homeCardOrder;
        for (const HomeCard card : HomeCards::ordered(next)) {
            const QString name = HomeCards::name(card);
            if (std::ranges::find(order, name) == order.end())
                order.push_back(name);
        }
        next.homeCardOrder = OrderRows::moved(order, m_cards.records(), from, to);
    });
}

void HomeSettingsModel::toggleCard(int row)
{
    const auto &rows = m_cards.records();
    if (row < 0 || row >= int(rows.size()))
        return;
    m_settings.update([id = rows[std::size_t(row)].id](AppSettings &next) {
        OrderRows::toggle(next.hiddenHomeCards, id);
    });
}

void HomeSettingsModel::resetCardOrder()
{
    m_settings.update([](AppSettings &next) { next.homeCardOrder.clear(); });
}

void HomeSettingsModel::moveFavorite(int from, int to)
{
    const auto &rows = m_favorites.records();
    if (from >= 0 && from < int(rows.size()))
        m_apps.move(QString(rows[std::size_t(from)].id), to);
}

void HomeSettingsModel::removeFavorite(int row)
{
    const auto &rows = m_favorites.records();
    if (row >= 0 && row < int(rows.size()))
        m_apps.remove(QString(rows[std::size_t(row)].id));
}

void HomeSettingsModel::update()
{
    m_cards.setRecords(OrderRows::finished(cardRows(), true));
    m_favorites.setRecords(OrderRows::finished(favoriteRows(), false));
    Q_EMIT changed();
}

std::vector<OrderRow> HomeSettingsModel::cardRows() const
{
    const std::vector<NotchModule::Card> available = m_sources.all();
    const StringList &hidden = m_settings.settings().hiddenHomeCards;
    std::vector<OrderRow> rows;
    for (const HomeCard card : HomeCards::ordered(m_settings.settings())) {
        if (!std::ranges::count(available, card, &NotchModule::Card::card))
            continue;
        const QString name = HomeCards::name(card);
        const auto moduleID = HomeCards::moduleID(card);
        const NotchModule *module = moduleID ? m_sources.modules.find(*moduleID) : nullptr;
        rows.push_back({.id = name,
                        .title = HomeCards::title(card),
                        .symbol = module ? module->symbol() : QStringLiteral("star.fill"),
                        .isShown = std::ranges::find(hidden, name) == hidden.end()});
    }
    return rows;
}

std::vector<OrderRow> HomeSettingsModel::favoriteRows() const
{
    std::vector<OrderRow> rows;
    for (const auto &application : m_apps.rows()) {
        rows.push_back({.id = application.id,
                        .title = application.name,
                        .icon = ApplicationSearch::iconSource(application)});
    }
    return rows;
}

} // namespace velmo
