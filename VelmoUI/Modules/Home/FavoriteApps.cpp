#include "VelmoUI/Modules/Home/FavoriteApps.h"

#include "VelmoUI/App/AppServices.h"

namespace velmo {

} // namespace velmo
