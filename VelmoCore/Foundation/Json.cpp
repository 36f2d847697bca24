#include "VelmoCore/Foundation/Json.h"
