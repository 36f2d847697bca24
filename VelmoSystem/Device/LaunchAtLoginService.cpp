#include "VelmoSystem/Device/LaunchAtLoginService.h"

namespace velmo {

LaunchAtLoginService::LaunchAtLoginService(LoginItem &item) : m_item(item), m_status(item.status())
{
}

} // namespace velmo
