#include "VelmoCore/Settings/AppSettings.h"
