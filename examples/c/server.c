/* Server: what it is called, what it runs, and how much it holds. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);
    VeltoChar name[64];
    uint32_t standard = 0, frequency = 0, resolution = 0, total = 0, available = 0;

    CHECK(velto_server_name(server, (VeltoTextBuffer){name, 64}));
    CHECK(velto_video_standard(server, &standard));
    CHECK(velto_video_frequency(server, &frequency));
    CHECK(velto_video_resolution(server, &resolution));
    CHECK(velto_disk_usage2(server, &total, &available));
    print_text(name);
    printf(": standard %u, rate %u, resolution %u, %u of %u fields free\n", (unsigned)standard,
           (unsigned)frequency, (unsigned)resolution, (unsigned)available, (unsigned)total);

    velto_close(server);
    return 0;
}
