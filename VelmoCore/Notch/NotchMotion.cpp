#include "VelmoCore/Notch/NotchMotion.h"
