#include "api/dispatch.h"
#include "connection/velto_arguments.h"

using namespace argument;
namespace command = ZAVL3::command;

VeltoResult velto_clip_exists(VeltoHandle handle, const VeltoChar* clip, uint32_t* exists)
{
    bool found = false;
    const VeltoResult result = dispatch(handle, [&](const ARef<VeltoConnObject>& connection) {
        return VeltoConnObject::clip_exists(connection, text_from_units(clip), &found);
    });
    if (exists != nullptr) {
        *exists = found;
    }
    return result;
}

VeltoResult velto_create_clip1(VeltoHandle handle, const VeltoChar* clip, uint32_t tracks)
{
    return plain_command<command::create_clip>(handle, Clip{clip}, NewTracks{tracks});
}

VeltoResult velto_create_clip2(VeltoHandle handle, const VeltoChar* clip, uint32_t tracks,
                               uint32_t length)
{
    return plain_command<command::create_clip>(handle, Clip{clip}, NewTracks{tracks},
                                               Length{length});
}

VeltoResult velto_create_clip3(VeltoHandle handle, uint32_t channel, const VeltoChar* clip,
                               uint32_t tracks, uint32_t length)
{
    return plain_command<command::create_clip>(handle, Clip{clip}, NewTracks{tracks},
                                               Length{length}, Channel{channel});
}

VeltoResult velto_create_child_clip1(VeltoHandle handle, const VeltoChar* clip,
                                     const VeltoChar* parent)
{
    return plain_command<command::create_child_clip>(handle, Clip{clip}, ParentClip{parent});
}

VeltoResult velto_create_child_clip2(VeltoHandle handle, const VeltoChar* clip,
                                     const VeltoChar* parent, uint32_t angle)
{
    return plain_command<command::create_child_clip>(handle, Clip{clip}, ParentClip{parent},
                                                     Angle{angle});
}

VeltoResult velto_create_directory(VeltoHandle handle, const VeltoChar* directory)
{
    return plain_command<command::create_directory>(handle, Directory{directory});
}

VeltoResult velto_delete_clip(VeltoHandle handle, const VeltoChar* clip)
{
    return plain_command<command::delete_clip>(handle, Clip{clip});
}

VeltoResult velto_rename_clip(VeltoHandle handle, const VeltoChar* from, const VeltoChar* to)
{
    return plain_command<command::rename_clip>(handle, FromClip{from}, ToClip{to});
}

VeltoResult velto_set_readonly(VeltoHandle handle, const VeltoChar*)
{
    return dispatch(handle, &VeltoConnObject::not_implemented);
}

VeltoResult velto_unset_readonly(VeltoHandle handle, const VeltoChar*)
{
    return dispatch(handle, &VeltoConnObject::not_implemented);
}
