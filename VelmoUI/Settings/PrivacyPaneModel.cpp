#include "VelmoUI/Settings/PrivacyPaneModel.h"

#include "VelmoUI/App/AppServices.h"

namespace velmo {

PrivacyPaneModel::PrivacyPaneModel(AppServices &services) : m_services(services)
{
}

} // namespace velmo
