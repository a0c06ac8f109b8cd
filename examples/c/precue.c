/* Pre-cue: what is to follow the present clip. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);

    CHECK(velto_cmd_loadclip1(server, VELTO_CHANNEL_A, VELTO_TEXT("news_open")));
    CHECK(velto_precue1(server, VELTO_CHANNEL_A, VELTO_TEXT("sport_intro"),
                        VELTO_PRECUE_EXPLICIT_SWITCH));
    CHECK(velto_precue_activate1(server, VELTO_CHANNEL_A));
    CHECK(velto_precue1(server, VELTO_CHANNEL_A, VELTO_TEXT("weather"), VELTO_PRECUE_END_OF_CLIP));
    CHECK(velto_precue_clear1(server, VELTO_CHANNEL_A));
    printf("A has gone on to sport_intro\n");

    velto_close(server);
    return 0;
}
