#include "VelmoCore/Storage/AppPaths.h"
