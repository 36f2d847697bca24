#include "VelmoCore/Settings/SettingsStore.h"
