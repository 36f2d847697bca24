#include "VelmoCore/Foundation/Text.h"
