/* Connection: how results and texts work, and commands that do not wait. */
#include "example.h"

int main(int argc, char** argv)
{
    VeltoHandle server = connect_to(argc, argv);
    VeltoChar text[128];

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
    printf("A was asked to play\n");

    velto_close(server);
    return 0;
}
