/* Play and stop: one channel at any speed, and two together. */
#include "example.h"

int main(int argc, char** argv)
{
    const uint32_t gang = VELTO_CHANNEL_BIT(VELTO_CHANNEL_A) | VELTO_CHANNEL_BIT(VELTO_CHANNEL_B);
    VeltoHandle server = connect_to(argc, argv);

    CHECK(velto_cmd_loadclip1(server, VELTO_CHANNEL_A, VELTO_TEXT("news_open")));
    CHECK(velto_cmd_loadclip1(server, VELTO_CHANNEL_B, VELTO_TEXT("weather")));
    CHECK(velto_cmd_play2(server, VELTO_CHANNEL_A, 0.5));
    CHECK(velto_cmd_stop2(server, VELTO_CHANNEL_A, VELTO_LATENCY_MINIMUM));
    CHECK(velto_cmd_gang_play1(server, gang));
    CHECK(velto_cmd_gang_stop1(server, gang));
    printf("A plays at half speed, A and B play and stop together\n");

    velto_close(server);
    return 0;
}
