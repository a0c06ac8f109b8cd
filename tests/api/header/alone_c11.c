#include "alone.h"
