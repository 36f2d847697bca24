#include "VelmoCore/Storage/AtomicFile.h"
