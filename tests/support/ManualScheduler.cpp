#include "tests/support/ManualScheduler.h"
