#include "tests/VelmoUI/ServicesFixture.h"

#include "VelmoCore/Settings/SettingsStore.h"
#include "VelmoUI/Composition/BuiltInModules.h"
#include "VelmoUI/Modules/Frame/ModuleRegistry.h"

namespace velmo {

ServicesFixture::ServicesFixture()
    : services(desktop.paths(), {DataProtectionStatus::Disabled{}}, desktop.platform)
{
}

ServicesFixture::~ServicesFixture() = default;

const AppSettings &ServicesFixture::settings() const
{
    return services.settings->settings();
}

void ServicesFixture::change(const std::function<void(AppSettings &)> &change)
{
    services.settings->update(change);
}

void ServicesFixture::addModules(const QString &id)
{
    for (auto &module : makeBuiltInModules(services)) {
        if (id.isEmpty() || module->id() == id)
            services.modules->add(std::move(module));
    }
}

} // namespace velmo
