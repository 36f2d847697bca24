#include "VelmoUI/Settings/ModulesPaneModel.h"

#include "VelmoSystem/Ports/Applications.h"
#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/App/ApplicationSearch.h"
#include "VelmoUI/Modules/Home/FavoriteApps.h"
#include "VelmoUI/Modules/Home/HomeView.h"

#include <algorithm>

namespace velmo {

namespace {

bool contains(const StringList &list, const QString &id)
{
    return std::ranges::find(list, id) != list.end();
}

void toggle(StringList &list, const QString &id)
{
    if (std::erase(list, id) == 0)
        list.push_back(id);
}

StringList ids(const std::vector<OrderRow> &rows)
{
    StringList ids;
    for (const OrderRow &row : rows)
        ids.push_back(row.id);
    return ids;
}

/// `order`, with one of the rows that show at another place among them. What doesn't show stays
/// beside what it stood beside.
StringList moved(StringList order, StringList shown, int from, int to)
{
    const int count = int(shown.size());
    if (from == to || from < 0 || to < 0 || from >= count || to >= count)
        return order;
    for (const QString &id : shown) {
        if (!contains(order, id))
            order.push_back(id);
    }
    const QString id = shown[std::size_t(from)];
    std::erase(shown, id);
    std::erase(order, id);
    const bool isLast = to == count - 1;
    const QString &neighbour = isLast ? shown.back() : shown[std::size_t(to)];
    order.insert(std::ranges::find(order, neighbour) + (isLast ? 1 : 0), id);
    return order;
}

/// Adds what depends on the whole list. Rows that can't be hidden can be removed.
std::vector<OrderRow> finished(std::vector<OrderRow> rows, bool canHide)
{
    int place = 0;
    for (OrderRow &row : rows) {
        row.spoken = QStringLiteral("%1, %2 de %3")
                         .arg(row.title, QString::number(++place), QString::number(rows.size()));
        if (canHide)
            row.spoken += row.isShown ? QStringLiteral(", visível") : QStringLiteral(", oculto");
        row.action =
            (canHide ? QStringLiteral("Mostrar %1") : QStringLiteral("Remover %1")).arg(row.title);
    }
    return rows;
}

} // namespace

ModulesPaneModel::ModulesPaneModel(AppServices &services)
    : m_services(services),
      m_observer(services.settings.observe([this](const auto &, const auto &) { update(); }))
{
    connect(&services.platform.applications, &Applications::changed, this,
            &ModulesPaneModel::update);
    update();
}

ModulesPaneModel::~ModulesPaneModel()
{
    m_services.settings.removeObserver(m_observer);
}

void ModulesPaneModel::moveModule(int from, int to)
{
    m_services.settings.update([&](AppSettings &next) {
        next.moduleOrder = moved(next.moduleOrder, ids(m_modules.records()), from, to);
    });
}

void ModulesPaneModel::moveCard(int from, int to)
{
    m_services.settings.update([&](AppSettings &next) {
        StringList order = next.homeCardOrder;
        for (const HomeCard card : HomeCards::ordered(next)) {
            if (!contains(order, HomeCards::name(card)))
                order.push_back(HomeCards::name(card));
        }
        next.homeCardOrder = moved(order, ids(m_cards.records()), from, to);
    });
}

void ModulesPaneModel::moveFavorite(int from, int to)
{
    const auto &rows = m_favorites.records();
    if (from >= 0 && from < int(rows.size()))
        FavoriteApps::move(QString(rows[std::size_t(from)].id), to, m_services);
}

void ModulesPaneModel::toggleModule(int row)
{
    const auto &rows = m_modules.records();
    if (row < 0 || row >= int(rows.size()) || !rows[std::size_t(row)].canToggle)
        return;
    m_services.settings.update(
        [id = rows[std::size_t(row)].id](AppSettings &next) { toggle(next.hiddenModules, id); });
}

void ModulesPaneModel::toggleCard(int row)
{
    const auto &rows = m_cards.records();
    if (row < 0 || row >= int(rows.size()))
        return;
    m_services.settings.update(
        [id = rows[std::size_t(row)].id](AppSettings &next) { toggle(next.hiddenHomeCards, id); });
}

void ModulesPaneModel::removeFavorite(int row)
{
    const auto &rows = m_favorites.records();
    if (row >= 0 && row < int(rows.size()))
        FavoriteApps::remove(QString(rows[std::size_t(row)].id), m_services);
}

void ModulesPaneModel::resetModuleOrder()
{
    m_services.settings.update([](AppSettings &next) { next.moduleOrder.clear(); });
}

void ModulesPaneModel::resetCardOrder()
{
    m_services.settings.update([](AppSettings &next) { next.homeCardOrder.clear(); });
}

const AppSettings &ModulesPaneModel::settings() const
{
    return m_services.settings.settings();
}

void ModulesPaneModel::update()
{
    m_modules.setRecords(finished(moduleRows(), true));
    m_cards.setRecords(finished(cardRows(), true));
    m_favorites.setRecords(finished(favoriteRows(), false));
    Q_EMIT changed();
}

std::vector<OrderRow> ModulesPaneModel::moduleRows() const
{
    const auto visible = m_services.modules.visible(settings()).size();
    std::vector<OrderRow> rows;
    for (const NotchModule *module : m_services.modules.ordered(settings())) {
        const bool isShown = !contains(settings().hiddenModules, module->id());
        rows.push_back({.id = module->id(),
                        .title = module->title(),
                        .symbol = module->symbol(),
                        .isShown = isShown,
                        .canToggle = !isShown || visible > 1});
    }
    return rows;
}

std::vector<OrderRow> ModulesPaneModel::cardRows() const
{
    std::vector<OrderRow> rows;
    const std::set<HomeCard> available = HomeView::available(m_services);
    for (const HomeCard card : HomeCards::ordered(settings())) {
        if (!available.contains(card))
            continue;
        const QString name = HomeCards::name(card);
        const auto moduleID = HomeCards::moduleID(card);
        const NotchModule *module = moduleID ? m_services.modules.find(*moduleID) : nullptr;
        rows.push_back({.id = name,
                        .title = HomeCards::title(card),
                        .symbol = module ? module->symbol() : QStringLiteral("star.fill"),
                        .isShown = !contains(settings().hiddenHomeCards, name)});
    }
    return rows;
}

std::vector<OrderRow> ModulesPaneModel::favoriteRows() const
{
    std::vector<OrderRow> rows;
    for (const auto &application : FavoriteApps::rows(m_services)) {
        rows.push_back({.id = application.id,
                        .title = application.name,
                        .icon = ApplicationSearch::iconSource(application)});
    }
    return rows;
}

} // namespace velmo
