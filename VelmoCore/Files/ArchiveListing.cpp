#include "VelmoCore/Files/ArchiveListing.h"

namespace velmo {

} // namespace velmo
