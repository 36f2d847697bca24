#include "VelmoUI/Settings/HotKeysModel.h"

#include "VelmoUI/App/AppServices.h"

namespace velmo {

HotKeysModel::HotKeysModel(AppServices &services) : m_services(services)
{
}

} // namespace velmo
