#include "VelmoSystem/FileProcessing/FileOperations.h"

namespace velmo {

} // namespace velmo
