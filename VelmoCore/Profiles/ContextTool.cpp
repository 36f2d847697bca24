#include "VelmoCore/Profiles/ContextTool.h"
