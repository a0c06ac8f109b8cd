#include "sim/clip_use.h"

#include <array>
#include <cstddef>
#include <map>
#include <memory>
#include <optional>

namespace veltosim
{

namespace
{

using Stamp = std::optional<std::uint64_t> Clip::*;

// In the order of the kinds of use.
constexpr std::array<Stamp, 4> stamps{&Clip::loaded, &Clip::unloaded, &Clip::played,
                                      &Clip::content_edited};

} // namespace

StoreChange stamps_of(const std::vector<ClipUse>& uses, const ClipStore& store,
                      const std::function<std::uint64_t()>& stamp)
{
    struct Draft {
        Clip clip;
        bool told = false;
    };
    std::map<std::uint64_t, Draft> drafts;
    for (const ClipUse& use : uses) {
        if (const ClipPtr clip = store.find_clip(use.clip)) { // it may have been deleted meanwhile
            Draft& draft = drafts.try_emplace(use.clip, Draft{*clip, false}).first->second;
            draft.clip.*stamps.at(static_cast<std::size_t>(use.kind)) = stamp();
            draft.told |= use.kind == ClipUse::Kind::recorded;
        }
    }
    StoreChange change;
    for (const auto& [number, draft] : drafts) {
        change.clips.push_back(
            {store.find_clip(number), std::make_shared<const Clip>(draft.clip), draft.told});
    }
    return change;
}

} // namespace veltosim
