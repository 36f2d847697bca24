#include "VelmoCore/Files/PageRanges.h"

namespace velmo {

} // namespace velmo
