#include "VelmoUI/Modules/Home/HomePageModel.h"

#include "VelmoUI/App/AppServices.h"

namespace velmo {

HomePageModel::HomePageModel(AppServices &services) : m_services(services)
{
}

} // namespace velmo
