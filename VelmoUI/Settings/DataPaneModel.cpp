#include "VelmoUI/Settings/DataPaneModel.h"

#include "VelmoUI/App/AppServices.h"

namespace velmo {

DataPaneModel::DataPaneModel(AppServices &services) : m_services(services)
{
}

} // namespace velmo
