#include "api/dispatch.h"

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
