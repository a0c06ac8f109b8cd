/* Edit and monitor: which tracks are edited, and which show their input. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);

    CHECK(velto_cmd_loadclip1(server, VELTO_CHANNEL_A, VELTO_TEXT("news_open")));
    CHECK(velto_edit1(server, VELTO_CHANNEL_A, VELTO_EDIT_VIDEO | VELTO_EDIT_AUDIO));
    CHECK(velto_edit_all_off(server, VELTO_CHANNEL_A));
    CHECK(velto_ee1(server, VELTO_CHANNEL_A, VELTO_EDIT_VIDEO, VELTO_MONITOR_MANUAL));
    CHECK(velto_ee_all_off(server, VELTO_CHANNEL_A));
    printf("A has edited and monitored\n");

    velto_close(server);
    return 0;
}
