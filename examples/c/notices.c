/* Notices: waits for what changes instead of asking again and again. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);
    uint32_t position = 0, kind = 0, channel = 0, seen = 0;

    /* The server reports what a getter has asked for. */
    CHECK(velto_cmd_loadclip1(server, VELTO_CHANNEL_C, VELTO_TEXT("countdown")));
    CHECK(velto_channel_position(server, VELTO_CHANNEL_C, &position));
    CHECK(velto_cmd_play1(server, VELTO_CHANNEL_C));

    while (seen < 10) {
        CHECK(velto_get_notification(server, 5000, &kind, &channel));
        if (kind == VELTO_NOTICE_NONE) {
            printf("nothing has changed for five seconds\n");
            return 1;
        }
        if (kind == VELTO_NOTICE_POSITION && channel == VELTO_CHANNEL_C) {
            CHECK(velto_channel_position(server, channel, &position));
            printf("C is at field %u\n", (unsigned)position);
            ++seen;
        }
    }

    velto_close(server);
    return 0;
}
