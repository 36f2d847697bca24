#include "VelmoCore/Foundation/Date.h"
