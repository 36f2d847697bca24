#include "VelmoSystem/FileProcessing/ArchiveProcessor.h"

namespace velmo {

} // namespace velmo
