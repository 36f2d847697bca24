#include "VelmoCore/Shelf/ContinuityLedger.h"

namespace velmo {

} // namespace velmo
