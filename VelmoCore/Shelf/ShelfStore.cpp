#include "VelmoCore/Shelf/ShelfStore.h"

namespace velmo {

} // namespace velmo
