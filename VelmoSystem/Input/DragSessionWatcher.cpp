#include "VelmoSystem/Input/DragSessionWatcher.h"
