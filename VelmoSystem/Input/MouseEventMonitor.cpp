#include "VelmoSystem/Input/MouseEventMonitor.h"
