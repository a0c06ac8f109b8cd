/* Virtual clips: an edit list of two segments, loaded and played like a clip. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);
    const VeltoChar* edit = VELTO_TEXT("example_edit");

    CHECK(velto_vclip_create(server, edit, 600));
    CHECK(velto_vclip_modification_start(server, edit));
    CHECK(velto_vclip_cfg_tracks(server, edit, VELTO_TEXT("news_open"),
                                 VELTO_TRACK_VIDEO | VELTO_TRACK_AUDIO));
    CHECK(velto_vclip_add_segment1(server, edit, VELTO_TEXT("news_open"), 100,
                                   VELTO_TRACK_VIDEO | VELTO_TRACK_AUDIO, 0, 300));
    CHECK(velto_vclip_add_segment2(server, edit, VELTO_TEXT("weather"), 0, VELTO_TRACK_VIDEO, 300,
                                   300, 1.0));
    CHECK(velto_vclip_modification_end(server, edit));
    printf("300 fields of news_open, then 300 of weather\n");

    CHECK(velto_cmd_load_vclip1(server, VELTO_CHANNEL_A, edit));
    CHECK(velto_cmd_play1(server, VELTO_CHANNEL_A));
    CHECK(velto_unload_channel(server, VELTO_CHANNEL_A));
    CHECK(velto_vclip_free(server, edit));
    printf("played and freed\n");

    velto_close(server);
    return 0;
}
