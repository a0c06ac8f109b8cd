/* List play-out: a playlist, element by element. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);

    CHECK(velto_cmd_loadlist1(server, VELTO_CHANNEL_D, VELTO_TEXT("idents")));
    CHECK(velto_cmd_playlist_cue_now(server, VELTO_CHANNEL_D, 1));
    CHECK(velto_cmd_playlist_play_now(server, VELTO_CHANNEL_D, 0));
    CHECK(velto_cmd_playlist_play_next(server, VELTO_CHANNEL_D, 2));
    printf("D runs the first element, the third is next\n");

    velto_close(server);
    return 0;
}
