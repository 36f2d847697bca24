#include "VelmoCore/Jobs/JobProgress.h"

namespace velmo {

} // namespace velmo
