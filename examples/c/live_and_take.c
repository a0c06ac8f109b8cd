/* Live and take: a recording that is followed while it goes on, and camera angles. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);

    CHECK(velto_go_live1(server, VELTO_CHANNEL_H));
    CHECK(velto_angle1(server, VELTO_CHANNEL_H, 1));
    printf("H shows what is being recorded\n");

    CHECK(velto_cmd_loadclip1(server, VELTO_CHANNEL_A, VELTO_TEXT("news_open")));
    CHECK(velto_precue1(server, VELTO_CHANNEL_A, VELTO_TEXT("weather"),
                        VELTO_PRECUE_EXPLICIT_SWITCH));
    CHECK(velto_take1(server, VELTO_CHANNEL_A, VELTO_TRANSITION_DISSOLVE, 25));
    printf("A dissolves to weather\n");

    velto_close(server);
    return 0;
}
