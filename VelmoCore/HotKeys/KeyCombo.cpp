#include "VelmoCore/HotKeys/KeyCombo.h"
