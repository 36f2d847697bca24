#include "VelmoCore/Activity/ActivityEvent.h"
