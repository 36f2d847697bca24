#include "VelmoSystem/Storage/KeychainKeyStore.h"
