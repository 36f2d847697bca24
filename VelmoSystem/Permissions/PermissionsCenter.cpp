#include "VelmoSystem/Permissions/PermissionsCenter.h"

namespace velmo {

PermissionsCenter::PermissionsCenter(PermissionSource &source) : m_source(source)
{
}

} // namespace velmo
