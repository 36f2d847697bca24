#include "VelmoCore/Home/HomeCard.h"

namespace velmo {

} // namespace velmo
