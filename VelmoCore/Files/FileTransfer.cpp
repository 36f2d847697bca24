#include "VelmoCore/Files/FileTransfer.h"

namespace velmo {

} // namespace velmo
