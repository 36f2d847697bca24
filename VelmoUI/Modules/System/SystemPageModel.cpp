#include "VelmoUI/Modules/System/SystemPageModel.h"

#include "VelmoUI/App/AppServices.h"

namespace velmo {

SystemPageModel::SystemPageModel(AppServices &services) : m_services(services)
{
}

} // namespace velmo
