#include "VelmoCore/Notch/NotchGeometry.h"
