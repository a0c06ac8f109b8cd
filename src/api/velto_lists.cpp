#include "api/dispatch.h"
#include "api/name_lists.h"

namespace command = ZAVL3::command;

namespace
{

template <typename Command>
VeltoResult open_names(VeltoHandle handle, VeltoListHandle* list)
{
    NameList names;
    const VeltoResult result = dispatch(handle, &VeltoConnObject::download_names<Command>, &names);
    if (result == VELTO_RESULT_OK && list != nullptr) {
        *list = name_lists().add(names);
    }
    return result;
}

VeltoResult take_change(VeltoHandle handle, const VeltoConnObject::ChangeKind& kind,
                        VeltoConnObject::IdSet VeltoConnObject::*set, VeltoTextBuffer name)
{
    return dispatch(handle, &VeltoConnObject::take_change, kind, set, name);
}

} // namespace

VeltoResult velto_open_clip_list(VeltoHandle handle, VeltoListHandle* list)
{
    return open_names<command::download_clipids>(handle, list);
}

VeltoResult velto_get_clip_name(VeltoListHandle list, VeltoTextBuffer name)
{
    return take_name(list, name);
}

void velto_close_clip_list(VeltoListHandle list)
{
    close_names(list);
}

VeltoResult velto_open_directory_list(VeltoHandle handle, VeltoListHandle* list)
{
    return open_names<command::download_directory_names>(handle, list);
}

VeltoResult velto_get_directory_name(VeltoListHandle list, VeltoTextBuffer name)
{
    return take_name(list, name);
}

void velto_close_directory_list(VeltoListHandle list)
{
    close_names(list);
}

VeltoResult velto_open_playlist_list(VeltoHandle handle, VeltoListHandle* list)
{
    return open_names<command::download_listids>(handle, list);
}

VeltoResult velto_get_playlist_name(VeltoListHandle list, VeltoTextBuffer name)
{
    return take_name(list, name);
}

void velto_close_playlist_list(VeltoListHandle list)
{
    close_names(list);
}

VeltoResult velto_track_clip_changes(VeltoHandle handle)
{
    return dispatch(handle, &VeltoConnObject::track_changes, VeltoConnObject::clip_changes);
}

VeltoResult velto_track_directory_changes(VeltoHandle handle)
{
    return dispatch(handle, &VeltoConnObject::track_changes, VeltoConnObject::directory_changes);
}

VeltoResult velto_track_change_added_clip(VeltoHandle handle, VeltoTextBuffer clip)
{
    return take_change(handle, VeltoConnObject::clip_changes, &VeltoConnObject::clips_added, clip);
}

VeltoResult velto_track_change_changed_clip(VeltoHandle handle, VeltoTextBuffer clip)
{
    return take_change(handle, VeltoConnObject::clip_changes, &VeltoConnObject::clips_changed,
                       clip);
}

VeltoResult velto_track_change_deleted_clip(VeltoHandle handle, VeltoTextBuffer clip)
{
    return take_change(handle, VeltoConnObject::clip_changes, &VeltoConnObject::clips_deleted,
                       clip);
}

VeltoResult velto_track_change_added_directory(VeltoHandle handle, VeltoTextBuffer directory)
{
    return take_change(handle, VeltoConnObject::directory_changes,
                       &VeltoConnObject::directories_added, directory);
}

VeltoResult velto_track_change_deleted_directory(VeltoHandle handle, VeltoTextBuffer directory)
{
    return take_change(handle, VeltoConnObject::directory_changes,
                       &VeltoConnObject::directories_deleted, directory);
}
