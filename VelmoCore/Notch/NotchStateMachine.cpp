#include "VelmoCore/Notch/NotchStateMachine.h"
