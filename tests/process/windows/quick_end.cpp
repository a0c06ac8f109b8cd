#include "process/quick_end.h"

#include <windows.h>

// It ends all other threads, wherever they are, and then tells the libraries.
void end_quickly(int code)
{
    ExitProcess(static_cast<UINT>(code));
}
