#include "VelmoCore/Actions/ActionCatalog.h"

namespace velmo {

} // namespace velmo
