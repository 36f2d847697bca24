#include "VelmoSystem/Storage/StorageInspector.h"
