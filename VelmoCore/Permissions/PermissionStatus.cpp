#include "VelmoCore/Permissions/PermissionStatus.h"

namespace velmo {

} // namespace velmo
