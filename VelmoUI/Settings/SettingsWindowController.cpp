#include "VelmoUI/Settings/SettingsWindowController.h"

namespace velmo {

struct SettingsWindowController::Window {};

SettingsWindowController::SettingsWindowController(AppServices &services) : m_services(services)
{
}

SettingsWindowController::~SettingsWindowController() = default;

void SettingsWindowController::show(std::optional<SettingsPane> pane)
{
    m_pane = pane.value_or(m_pane);
    m_services.showNotch();
}

} // namespace velmo
