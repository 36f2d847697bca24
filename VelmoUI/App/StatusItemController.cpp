#include "VelmoUI/App/StatusItemController.h"

#include "VelmoUI/App/AppServices.h"
#include "VelmoUI/Notch/NotchCoordinator.h"

namespace velmo {

StatusItemController::StatusItemController(AppServices &services, NotchCoordinator &coordinator)
    : m_services(services), m_coordinator(coordinator),
      m_observer(services.settings.observe([this](const auto &, const auto &) { update(); }))
{
    update();
}

StatusItemController::~StatusItemController()
{
    m_services.settings.removeObserver(m_observer);
}

void StatusItemController::update()
{
}

void StatusItemController::buildMenu()
{
}

} // namespace velmo
