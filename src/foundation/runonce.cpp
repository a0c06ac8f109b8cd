#include "foundation/runonce.h"

#include "foundation/aassert.h"

RunOnce::RunOnce(Function run_function)
{
    if (A_CHECK("runonce", run_function != nullptr)) {
        run_function(this, 0);
    }
}

namespace
{

constinit AtomicCell128 cell;

void store(RunOnce*, std::uint32_t value)
{
    AtomicCell128 before;
    do {
        before = {atomic_read(&cell.value), atomic_read(&cell.generation)};
    } while (!atomic_compare_exchange(&cell, before, {value, before.generation + 1}));
}

const RunOnce store_at_load(&store);

} // namespace

AtomicCell128& run_once_cell()
{
    return cell;
}
