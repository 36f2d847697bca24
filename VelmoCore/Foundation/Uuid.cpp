#include "VelmoCore/Foundation/Uuid.h"
