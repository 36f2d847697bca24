#include "VelmoCore/Notch/NotchLayout.h"
