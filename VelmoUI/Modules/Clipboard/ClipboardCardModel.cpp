#include "VelmoUI/Modules/Clipboard/ClipboardCardModel.h"

#include "VelmoCore/Clipboard/ClipboardStore.h"
#include "VelmoCore/Foundation/Scheduler.h"
#include "VelmoSystem/Clipboard/ClipboardMonitor.h"

#include <algorithm>

namespace velmo {

ClipboardCardModel::ClipboardCardModel(const ClipboardServices &services, PanelPort &panel)
    : m_services(services), m_panel(panel)
{
    connect(&services.store, &ClipboardStore::itemsChanged, this, &ClipboardCardModel::update);
    update();
}

void ClipboardCardModel::copy(int index)
{
    const auto &items = m_services.store.items();
    if (index < 0 || index >= int(std::min(items.size(), mostItems)))
        return;
    m_services.monitor.copy(ClipItem(items[std::size_t(index)]));
    m_panel.close();
}

void ClipboardCardModel::watch(bool isWatched)
{
    if (isWatched)
        update(); // the ages
}

void ClipboardCardModel::update()
{
    const auto &items = m_services.store.items();
    std::vector<ClipRow> rows;
    for (std::size_t i = 0; i < std::min(items.size(), mostItems); ++i)
        rows.push_back(ClipRows::make(items[i], m_services.scheduler.now()));
    m_rows.setRecords(rows);
    Q_EMIT changed();
}

} // namespace velmo
