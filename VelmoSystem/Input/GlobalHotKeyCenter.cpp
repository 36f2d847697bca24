#include "VelmoSystem/Input/GlobalHotKeyCenter.h"
