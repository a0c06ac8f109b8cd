#include "api/dispatch.h"
#include "connection/velto_arguments.h"

using namespace argument;
namespace command = ZAVL3::command;

VeltoResult velto_vclip_create(VeltoHandle handle, const VeltoChar* vclip, uint32_t length)
{
    return plain_command<command::vclip_create>(handle, VClip{vclip}, Length{length});
}

VeltoResult velto_vclip_free(VeltoHandle handle, const VeltoChar* vclip)
{
    return plain_command<command::vclip_free>(handle, VClip{vclip});
}

VeltoResult velto_vclip_modification_start(VeltoHandle handle, const VeltoChar* vclip)
{
    return plain_command<command::vclip_modification_start>(handle, VClip{vclip});
}

VeltoResult velto_vclip_modification_end(VeltoHandle handle, const VeltoChar* vclip)
{
    return plain_command<command::vclip_modification_end>(handle, VClip{vclip});
}

VeltoResult velto_vclip_cfg_tracks(VeltoHandle handle, const VeltoChar* vclip,
                                   const VeltoChar* clip, uint32_t tracks)
{
    return plain_command<command::vclip_cfg_tracks>(handle, VClip{vclip}, Clip{clip},
                                                    Tracks{tracks});
}

VeltoResult velto_vclip_add_segment1(VeltoHandle handle, const VeltoChar* vclip,
                                     const VeltoChar* clip, uint32_t position, uint32_t tracks,
                                     uint32_t vclip_position, uint32_t length)
{
    return plain_command<command::vclip_add_segment>(handle, VClip{vclip}, Clip{clip},
                                                     Position{position}, Tracks{tracks},
                                                     VClipPosition{vclip_position}, Length{length});
}

VeltoResult velto_vclip_add_segment2(VeltoHandle handle, const VeltoChar* vclip,
                                     const VeltoChar* clip, uint32_t position, uint32_t tracks,
                                     uint32_t vclip_position, uint32_t length, double speed)
{
    return plain_command<command::vclip_add_segment>(
        handle, VClip{vclip}, Clip{clip}, Position{position}, Tracks{tracks},
        VClipPosition{vclip_position}, Length{length}, Speed{speed});
}

VeltoResult velto_vclip_clear_segment(VeltoHandle handle, const VeltoChar* vclip, uint32_t tracks,
                                      uint32_t vclip_position, uint32_t length)
{
    return plain_command<command::vclip_clear_segment>(
        handle, VClip{vclip}, Tracks{tracks}, VClipPosition{vclip_position}, Length{length});
}

VeltoResult velto_vclip_ripple(VeltoHandle handle, const VeltoChar* vclip, uint32_t tracks,
                               uint32_t vclip_position, uint32_t distance)
{
    return plain_command<command::vclip_ripple>(handle, VClip{vclip}, Tracks{tracks},
                                                VClipPosition{vclip_position},
                                                VClipDistance{distance});
}

VeltoResult velto_vclip_track_enable(VeltoHandle handle, const VeltoChar* vclip, uint32_t tracks)
{
    return plain_command<command::vclip_track_enable>(handle, VClip{vclip}, Tracks{tracks});
}
