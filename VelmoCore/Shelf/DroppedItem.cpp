#include "VelmoCore/Shelf/DroppedItem.h"
