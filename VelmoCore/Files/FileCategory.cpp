#include "VelmoCore/Files/FileCategory.h"

namespace velmo {

} // namespace velmo
