#include "VelmoCore/HotKeys/KeyNames.h"
