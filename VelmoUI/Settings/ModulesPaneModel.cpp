#include "VelmoUI/Settings/ModulesPaneModel.h"

#include "VelmoUI/App/AppServices.h"

namespace velmo {

ModulesPaneModel::ModulesPaneModel(AppServices &services) : m_services(services)
{
}

} // namespace velmo
