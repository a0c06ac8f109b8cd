/* Transport: loads, plays, seeks and pre-cues, one channel and a gang of two. */
#include "example.h"

int main(int argc, char** argv)
{
    const uint32_t gang = VELTO_CHANNEL_BIT(VELTO_CHANNEL_A) | VELTO_CHANNEL_BIT(VELTO_CHANNEL_B);
    VeltoHandle server = connect_to(argc, argv);

    CHECK(velto_cmd_loadclip1(server, VELTO_CHANNEL_A, VELTO_TEXT("news_open")));
    CHECK(velto_cmd_play2(server, VELTO_CHANNEL_A, 0.5));
    CHECK(velto_cmd_stop1(server, VELTO_CHANNEL_A));
    CHECK(velto_goto1(server, VELTO_CHANNEL_A, 250));
    CHECK(velto_jog1(server, VELTO_CHANNEL_A, (uint32_t)-25));
    CHECK(velto_set_repeat(server, VELTO_CHANNEL_A, VELTO_REPEAT_LOOP));
    printf("A plays, stops, seeks and jogs\n");

    CHECK(velto_precue1(server, VELTO_CHANNEL_A, VELTO_TEXT("sport_intro"),
                        VELTO_PRECUE_EXPLICIT_SWITCH));
    CHECK(velto_precue_activate1(server, VELTO_CHANNEL_A));
    printf("A has gone on to sport_intro\n");

    CHECK(velto_cmd_loadclip1(server, VELTO_CHANNEL_B, VELTO_TEXT("weather")));
    CHECK(velto_gang_goto1(server, gang, 0));
    CHECK(velto_cmd_gang_play1(server, gang));
    CHECK(velto_cmd_gang_stop1(server, gang));
    printf("A and B play and stop together\n");

    CHECK(velto_cmd_loadlist1(server, VELTO_CHANNEL_D, VELTO_TEXT("idents")));
    CHECK(velto_cmd_playlist_play_now(server, VELTO_CHANNEL_D, 0));
    CHECK(velto_unload_channel(server, VELTO_CHANNEL_D));
    printf("D has run a playlist\n");

    velto_close(server);
    return 0;
}
