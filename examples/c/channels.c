/* Channel state: what a channel does, from the cache. The first call of a kind asks the server to
   report it; the later ones are local, and may be made at any rate. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);
    VeltoChar clip[64];
    uint32_t status = 0, position = 0, length = 0, repeat = 0, angle = 0, angles = 0;
    double speed = 0;

    CHECK(velto_cmd_loadclip3(server, VELTO_CHANNEL_B, VELTO_TEXT("weather"), VELTO_REPEAT_LOOP,
                              500));
    CHECK(velto_cmd_play2(server, VELTO_CHANNEL_B, 2.0));

    CHECK(velto_channel_status(server, VELTO_CHANNEL_B, &status));
    CHECK(velto_channel_clip(server, VELTO_CHANNEL_B, (VeltoTextBuffer){clip, 64}));
    CHECK(velto_channel_position(server, VELTO_CHANNEL_B, &position));
    CHECK(velto_channel_speed(server, VELTO_CHANNEL_B, &speed));
    CHECK(velto_channel_clip_length(server, VELTO_CHANNEL_B, &length));
    CHECK(velto_channel_repeat(server, VELTO_CHANNEL_B, &repeat));
    CHECK(velto_channel_angle(server, VELTO_CHANNEL_B, &angle, &angles));

    printf("B: status %u, ", (unsigned)status);
    print_text(clip);
    printf(" at %u of %u, speed %g, repeat %u, angle %u of %u\n", (unsigned)position,
           (unsigned)length, speed, (unsigned)repeat, (unsigned)angle, (unsigned)angles);

    velto_close(server);
    return 0;
}
