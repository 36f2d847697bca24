#include "VelmoSystem/FileProcessing/FileSummary.h"

namespace velmo {

} // namespace velmo
