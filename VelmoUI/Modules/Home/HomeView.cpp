#include "VelmoUI/Modules/Home/HomeView.h"

#include "VelmoUI/App/AppServices.h"

namespace velmo {

} // namespace velmo
