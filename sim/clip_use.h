#pragma once

#include <cstdint>
#include <functional>
#include <vector>

#include "sim/channel.h"
#include "sim/clip_store.h"

namespace veltosim
{

// What becomes of the clips' stamps when channels have used them so. Clients are told of what was
// recorded into a clip, but not of loading and playing, which change nothing in it.
StoreChange stamps_of(const std::vector<ClipUse>& uses, const ClipStore& store,
                      const std::function<std::uint64_t()>& stamp);

} // namespace veltosim
