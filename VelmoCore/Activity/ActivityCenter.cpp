#include "VelmoCore/Activity/ActivityCenter.h"
