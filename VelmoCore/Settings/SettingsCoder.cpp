#include "VelmoCore/Settings/SettingsCoder.h"
