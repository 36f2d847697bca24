#include "VelmoSystem/FileProcessing/QuickActions.h"

namespace velmo {

} // namespace velmo
