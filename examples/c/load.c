/* Load: a clip, at once at a position, looped, and nothing. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);

    CHECK(velto_cmd_loadclip1(server, VELTO_CHANNEL_A, VELTO_TEXT("weather")));
    CHECK(velto_cmd_loadclip2(server, VELTO_CHANNEL_A, VELTO_TEXT("weather"), VELTO_REPEAT_LOOP));
    CHECK(velto_cmd_loadclip3(server, VELTO_CHANNEL_A, VELTO_TEXT("weather"), VELTO_REPEAT_LOOP,
                              500));
    CHECK(velto_cmd_load_vclip1(server, VELTO_CHANNEL_B, VELTO_TEXT("headlines")));
    CHECK(velto_unload_channel(server, VELTO_CHANNEL_A));
    printf("A has held a clip, B holds a virtual clip\n");

    velto_close(server);
    return 0;
}
