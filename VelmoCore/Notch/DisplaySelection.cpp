#include "VelmoCore/Notch/DisplaySelection.h"
