#include "VelmoCore/Files/FileNaming.h"

namespace velmo {

} // namespace velmo
