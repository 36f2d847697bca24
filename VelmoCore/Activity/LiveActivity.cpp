#include "VelmoCore/Activity/LiveActivity.h"
