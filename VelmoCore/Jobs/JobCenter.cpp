#include "VelmoCore/Jobs/JobCenter.h"

namespace velmo {

} // namespace velmo
