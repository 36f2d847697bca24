#include "VelmoCore/Permissions/PermissionKind.h"

namespace velmo {

PermissionTexts Permissions::texts(PermissionKind)
{
    return {};
}

} // namespace velmo
