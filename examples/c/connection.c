/* Connection and server: what is there, how results and texts work, commands that do not wait. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);
    VeltoChar name[64];
    VeltoChar text[128];
    uint32_t standard = 0, total = 0, available = 0;

    CHECK(velto_server_name(server, (VeltoTextBuffer){name, 64}));
    CHECK(velto_video_standard(server, &standard));
    CHECK(velto_disk_usage2(server, &total, &available));
    print_text(name);
    printf(": standard %u, %u of %u fields free\n", (unsigned)standard, (unsigned)available,
           (unsigned)total);

    /* A refusal is a result; its text is kept for this thread. */
    if (velto_cmd_loadclip1(server, VELTO_CHANNEL_A, VELTO_TEXT("no_such_clip")) ==
        VELTO_RESULT_FAILED) {
        velto_get_last_error((VeltoTextBuffer){text, 128});
        printf("refused: ");
        print_text(text);
        putchar('\n');
    }

    /* The number 1 means: do not wait. Whether these succeed is not told; velto_sync waits until
       all have been answered. */
    velto_synchronous(server, VELTO_COMMANDS_DO_NOT_WAIT);
    CHECK(velto_cmd_loadclip1(server, VELTO_CHANNEL_A, VELTO_TEXT("news_open")));
    CHECK(velto_cmd_play1(server, VELTO_CHANNEL_A));
    velto_sync(server);

    velto_close(server);
    return 0;
}
