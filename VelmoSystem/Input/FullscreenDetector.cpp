#include "VelmoSystem/Input/FullscreenDetector.h"
