#include "foundation/bsem.h"

#include "foundation/aassert.h"

void BSem::signal()
{
    A_CHECK("bsem", platform::release_semaphore(handle) != platform::ReleaseResult::failed);
}
