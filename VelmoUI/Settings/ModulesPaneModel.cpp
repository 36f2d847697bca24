#include "VelmoUI/Settings/ModulesPaneModel.h"

#include <algorithm>

namespace velmo {

ModulesPaneModel::ModulesPaneModel(SettingsStore &settings, const ModuleRegistry &registry)
    : m_settings(settings), m_registry(registry)
{
    connect(&settings, &SettingsStore::settingsChanged, this, &ModulesPaneModel::update);
    update();
}

void ModulesPaneModel::moveModule(int from, int to)
{
    m_settings.update([&](AppSettings &next) {
        next.moduleOrder = OrderRows::moved(next.moduleOrder, m_modules.records(), from, to);
    });
}

void ModulesPaneModel::toggleModule(int row)
{
    const auto &rows = m_modules.records();
    if (row < 0 || row >= int(rows.size()) || !rows[std::size_t(row)].canToggle)
        return;
    m_settings.update([id = rows[std::size_t(row)].id](AppSettings &next) {
        OrderRows::toggle(next.hiddenModules, id);
    });
}

void ModulesPaneModel::resetModuleOrder()
{
    m_settings.update([](AppSettings &next) { next.moduleOrder.clear(); });
}

void ModulesPaneModel::update()
{
    const AppSettings &settings = m_settings.settings();
    const auto visible = m_registry.visible(settings).size();
    std::vector<OrderRow> rows;
    for (const NotchModule *module : m_registry.ordered(settings)) {
        const bool isShown =
            std::ranges::find(settings.hiddenModules, module->id()) == settings.hiddenModules.end();
        rows.push_back({.id = module->id(),
                        .title = module->title(),
                        .symbol = module->symbol(),
                        .isShown = isShown,
                        .canToggle = !isShown || visible > 1});
    }
    m_modules.setRecords(OrderRows::finished(rows, true));
}

} // namespace velmo
