#include "VelmoCore/Settings/SettingsBounds.h"

namespace velmo {

} // namespace velmo
