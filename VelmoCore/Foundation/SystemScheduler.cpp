#include "VelmoCore/Foundation/SystemScheduler.h"
