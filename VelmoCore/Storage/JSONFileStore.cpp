#include "VelmoCore/Storage/JSONFileStore.h"
