#include "VelmoUI/Notch/ModuleSelection.h"

#include <algorithm>
#include <cmath>

namespace velmo {

namespace {

/// What surrounds a module's content in the panel.
constexpr double widthPadding = 20;

} // namespace

ModuleSelection::ModuleSelection(ModuleRegistry &registry, SettingsStore &settings)
    : m_registry(registry), m_settings(settings),
      m_observation(settings.observe([this](const AppSettings &before, const AppSettings &after) {
          if (before.moduleOrder == after.moduleOrder &&
              before.hiddenModules == after.hiddenModules)
              return;
          Q_EMIT visibleChanged();
          Q_EMIT changed();
      }))
{
}

std::vector<NotchModule *> ModuleSelection::visible() const
{
    return m_registry.visible(m_settings.settings());
}

NotchModule *ModuleSelection::current() const
{
    const auto modules = visible();
    const auto selected = std::ranges::find(modules, m_id, &NotchModule::id);
    if (selected != modules.end())
        return *selected;
    return modules.empty() ? nullptr : modules.front();
}

std::optional<double> ModuleSelection::width() const
{
    const auto *module = current();
    const auto width = module ? module->contentWidth() : std::nullopt;
    return width ? std::optional(std::ceil(*width + widthPadding)) : std::nullopt;
}

bool ModuleSelection::isVisible(const QString &id) const
{
    return std::ranges::count(visible(), id, &NotchModule::id) > 0;
}

void ModuleSelection::select(const QString &id)
{
    if (id == m_id || !isVisible(id))
        return;
    m_id = id;
    Q_EMIT changed();
}

void ModuleSelection::select(int index)
{
    const auto modules = visible();
    if (index >= 0 && index < int(modules.size()))
        select(modules[std::size_t(index)]->id());
}

void ModuleSelection::selectAdjacent(int direction)
{
    const auto modules = visible();
    if (modules.empty())
        return;
    const auto count = int(modules.size());
    const auto place = int(std::ranges::find(modules, current()) - modules.begin());
    select((place + direction % count + count) % count);
}

void ModuleSelection::activate()
{
    if (auto *module = current())
        m_registry.activateIfNeeded(*module);
}

} // namespace velmo
