#include "VelmoUI/Modules/Clipboard/ClipboardCardModel.h"

#include "VelmoUI/App/AppServices.h"

#include <algorithm>

namespace velmo {

ClipboardCardModel::ClipboardCardModel(const ModuleContext &context) : m_context(context)
{
    connect(&context.services.clipboard, &ClipboardStore::itemsChanged, this,
            &ClipboardCardModel::update);
    update();
}

void ClipboardCardModel::copy(int index)
{
    AppServices &services = m_context.services;
    const auto &items = services.clipboard.items();
    if (index < 0 || index >= int(std::min(items.size(), mostItems)))
        return;
    services.clipboardMonitor.copy(ClipItem(items[std::size_t(index)]));
    m_context.close();
}

void ClipboardCardModel::update()
{
    AppServices &services = m_context.services;
    const auto &items = services.clipboard.items();
    std::vector<ClipRow> rows;
    for (std::size_t i = 0; i < std::min(items.size(), mostItems); ++i)
        rows.push_back(ClipRows::make(items[i], services.platform.scheduler.now()));
    m_rows.setRecords(rows);
    Q_EMIT changed();
}

} // namespace velmo
