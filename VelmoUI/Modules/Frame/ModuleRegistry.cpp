#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

#include "VelmoCore/Foundation/LocalizedError.h"
#include "VelmoCore/Foundation/Log.h"

#include <algorithm>

namespace velmo {

void ModuleRegistry::add(std::unique_ptr<NotchModule> module)
{
    if (!find(module->id()))
        m_modules.push_back(std::move(module));
}

NotchModule *ModuleRegistry::find(const QString &id) const
{
    const auto found =
        std::ranges::find_if(m_modules, [&](const auto &module) { return module->id() == id; });
    return found == m_modules.end() ? nullptr : found->get();
}

std::vector<NotchModule *> ModuleRegistry::all() const
{
    std::vector<NotchModule *> modules;
    for (const auto &module : m_modules)
        modules.push_back(module.get());
    return modules;
}

std::vector<NotchModule *> ModuleRegistry::ordered(const ModuleSettings &settings) const
{
    std::vector<NotchModule *> modules = all();
    const auto place = [&](const NotchModule *module) {
        return std::ranges::find(settings.moduleOrder, module->id()) - settings.moduleOrder.begin();
    };
    std::ranges::stable_sort(modules, {}, place);
    return modules;
}

std::vector<NotchModule *> ModuleRegistry::visible(const ModuleSettings &settings) const
{
    auto modules = ordered(settings);
    std::erase_if(modules, [&](const NotchModule *module) {
        return std::ranges::find(settings.hiddenModules, module->id()) !=
               settings.hiddenModules.end();
    });
    return modules;
}

void ModuleRegistry::activateIfNeeded(NotchModule &module)
{
    const QString id = module.id();
    if (!m_activated.insert(id).second)
        return;
    try {
        module.activate();
        if (m_failures.erase(id) > 0)
            Q_EMIT failuresChanged();
    } catch (const LocalizedError &error) {
        qCWarning(Log::modules).noquote()
            << "Módulo" << id << "não pôde ser carregado:" << error.description();
        m_activated.erase(id);
        m_failures[id] = error.description();
        Q_EMIT failuresChanged();
    }
}

void ModuleRegistry::retry(const QString &id)
{
    if (m_failures.erase(id) > 0)
        Q_EMIT failuresChanged();
    if (auto *module = find(id))
        activateIfNeeded(*module);
}

} // namespace velmo
