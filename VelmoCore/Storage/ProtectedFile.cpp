#include "VelmoCore/Storage/ProtectedFile.h"
