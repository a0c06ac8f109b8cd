/* Loop and out point: how a clip repeats, and where it stops. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);

    CHECK(velto_cmd_loadclip1(server, VELTO_CHANNEL_A, VELTO_TEXT("countdown")));
    CHECK(velto_set_repeat(server, VELTO_CHANNEL_A, VELTO_REPEAT_PING_PONG));
    CHECK(velto_set_out1(server, VELTO_CHANNEL_A, 500));
    CHECK(velto_clear_out(server, VELTO_CHANNEL_A));
    CHECK(velto_set_repeat(server, VELTO_CHANNEL_A, VELTO_REPEAT_OFF));
    printf("A has repeated, and had an out point\n");

    velto_close(server);
    return 0;
}
