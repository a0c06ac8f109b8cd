/* Seek: to a position, and by a distance. Positions are counted in fields; a negative distance is
 * one of 32 bits. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);

    CHECK(velto_cmd_loadclip1(server, VELTO_CHANNEL_A, VELTO_TEXT("news_open")));
    CHECK(velto_goto1(server, VELTO_CHANNEL_A, 250));
    CHECK(velto_jog1(server, VELTO_CHANNEL_A, (uint32_t)-25));
    CHECK(velto_gang_goto1(server, VELTO_CHANNEL_BIT(VELTO_CHANNEL_A), 0));
    printf("A has been at 250, at 225 and at 0\n");

    velto_close(server);
    return 0;
}
