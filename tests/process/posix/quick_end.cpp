#include "process/quick_end.h"

#include <cstdlib>

void end_quickly(int code)
{
    std::quick_exit(code);
}
