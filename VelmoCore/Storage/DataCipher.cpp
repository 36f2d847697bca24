#include "VelmoCore/Storage/DataCipher.h"
