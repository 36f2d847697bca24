#include "VelmoCore/Foundation/TimerQueue.h"
