#include "api/dispatch.h"

#include <algorithm>
#include <limits>

using ZAVL3::reply::disk_usage;

namespace
{

// The fields in so many bytes, without half a frame. The largest number is odd all the same, since
// it is cut to that last. Wanted.
uint32_t whole_frames(uint64_t bytes, uint32_t field_size)
{
    const uint64_t fields = bytes / field_size & ~uint64_t{1};
    return static_cast<uint32_t>(std::min<uint64_t>(fields, std::numeric_limits<uint32_t>::max()));
}

} // namespace

VeltoResult velto_server_name(VeltoHandle handle, VeltoTextBuffer name)
{
    return dispatch(handle, &VeltoConnObject::server_name, name);
}

VeltoResult velto_video_standard(VeltoHandle handle, uint32_t* standard)
{
    return dispatch(handle, &VeltoConnObject::video_standard, standard);
}

VeltoResult velto_video_frequency(VeltoHandle handle, uint32_t* frequency)
{
    return dispatch(handle, &VeltoConnObject::video_frequency, frequency);
}

VeltoResult velto_video_resolution(VeltoHandle handle, uint32_t* resolution)
{
    return dispatch(handle, &VeltoConnObject::video_resolution, resolution);
}

VeltoResult velto_disk_usage1(VeltoHandle handle, uint64_t* total, uint64_t* available,
                              uint32_t* field_size)
{
    disk_usage usage;
    const VeltoResult result = dispatch(handle, &VeltoConnObject::disk_usage, &usage);
    if (result == VELTO_RESULT_OK) {
        *total = usage.get<"TotalDiskSpace">();
        *available = usage.get<"AvailableDiskSpace">();
        *field_size = usage.get<"FieldSize">();
    }
    return result;
}

VeltoResult velto_disk_usage2(VeltoHandle handle, uint32_t* total, uint32_t* available)
{
    disk_usage usage;
    const VeltoResult result = dispatch(handle, &VeltoConnObject::disk_usage, &usage);
    if (result != VELTO_RESULT_OK) {
        return result;
    }
    const uint32_t field_size = usage.get<"FieldSize">();
    if (field_size == 0) {
        return result_failed("Internal software error");
    }
    *total = whole_frames(usage.get<"TotalDiskSpace">(), field_size);
    *available = whole_frames(usage.get<"AvailableDiskSpace">(), field_size);
    return result;
}
