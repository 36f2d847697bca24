#include "VelmoUI/Modules/Shelf/ShelfCardModel.h"

#include "VelmoUI/Modules/Shelf/ShelfOpening.h"

#include <algorithm>

namespace velmo {

ShelfCardModel::ShelfCardModel(const ShelfServices &services, PanelPort &panel)
    : m_services(services), m_panel(panel)
{
    connect(&services.shelf, &ShelfStore::itemsChanged, this, &ShelfCardModel::update);
    update();
}

void ShelfCardModel::open(int index)
{
    const auto &items = m_services.shelf.items();
    if (index < 0 || index >= int(items.size()))
        return;
    m_notice = ShelfOpening::open({items[std::size_t(index)]}, m_services, m_panel);
    Q_EMIT changed();
}

void ShelfCardModel::watch(bool isWatched)
{
    if (isWatched)
        return;
    m_notice.clear();
    Q_EMIT changed();
}

void ShelfCardModel::update()
{
    const auto &items = m_services.shelf.items();
    std::vector<ShelfRow> rows;
    for (std::size_t i = 0; i < std::min(items.size(), mostItems); ++i)
        rows.push_back(ShelfRows::make(items[i]));
    m_rows.setRecords(rows);
    Q_EMIT changed();
}

} // namespace velmo
